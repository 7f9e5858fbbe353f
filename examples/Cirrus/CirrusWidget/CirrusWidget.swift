import SwiftUI
import WidgetKit

struct ForecastEntry: TimelineEntry {
    let date: Date
    let temperature: Double
}

struct ForecastProvider: TimelineProvider {
    private let defaults = UserDefaults(suiteName: "group.com.example.cirrus")

    func placeholder(in context: Context) -> ForecastEntry {
        ForecastEntry(date: .now, temperature: 18)
    }

    func getSnapshot(in context: Context, completion: @escaping (ForecastEntry) -> Void) {
        completion(currentEntry())
    }

    func getTimeline(in context: Context, completion: @escaping (Timeline<ForecastEntry>) -> Void) {
        let next = Calendar.current.date(byAdding: .hour, value: 1, to: .now) ?? .now
        completion(Timeline(entries: [currentEntry()], policy: .after(next)))
    }

    private func currentEntry() -> ForecastEntry {
        ForecastEntry(date: .now, temperature: defaults?.double(forKey: "temperature") ?? 18)
    }
}

struct CirrusWidget: Widget {
    var body: some WidgetConfiguration {
        StaticConfiguration(kind: "CirrusWidget", provider: ForecastProvider()) { entry in
            Label("\(Int(entry.temperature.rounded()))°", systemImage: "cloud.sun")
                .font(.title)
                .containerBackground(.fill.tertiary, for: .widget)
        }
        .configurationDisplayName("Forecast")
        .description("The temperature Cirrus last fetched.")
        .supportedFamilies([.systemSmall])
    }
}
