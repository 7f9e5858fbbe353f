import SwiftUI
import WidgetKit

struct RefreshEntry: TimelineEntry {
    let date: Date
    let lastRefresh: Date?
}

struct Provider: TimelineProvider {
    private let defaults = UserDefaults(suiteName: "group.com.example.nimbus")

    func placeholder(in context: Context) -> RefreshEntry {
        RefreshEntry(date: .now, lastRefresh: nil)
    }

    func getSnapshot(in context: Context, completion: @escaping (RefreshEntry) -> Void) {
        completion(entry(at: .now))
    }

    func getTimeline(in context: Context, completion: @escaping (Timeline<RefreshEntry>) -> Void) {
        let next = Calendar.current.date(byAdding: .minute, value: 30, to: .now) ?? .now
        completion(Timeline(entries: [entry(at: .now)], policy: .after(next)))
    }

    private func entry(at date: Date) -> RefreshEntry {
        let seconds = defaults?.double(forKey: "lastRefresh") ?? 0
        return RefreshEntry(date: date, lastRefresh: seconds > 0 ? Date(timeIntervalSince1970: seconds) : nil)
    }
}

struct NimbusWidgetEntryView: View {
    var entry: Provider.Entry

    var body: some View {
        VStack(alignment: .leading) {
            Text("Nimbus Sky")
                .font(.headline)
            if let lastRefresh = entry.lastRefresh {
                Text(lastRefresh, style: .relative)
            } else {
                Text("Not refreshed yet")
            }
        }
        .containerBackground(.fill.tertiary, for: .widget)
    }
}

struct NimbusWidget: Widget {
    let kind = "NimbusWidget"

    var body: some WidgetConfiguration {
        StaticConfiguration(kind: kind, provider: Provider()) { entry in
            NimbusWidgetEntryView(entry: entry)
        }
        .configurationDisplayName("Nimbus Sky")
        .description("Shows when Nimbus last refreshed.")
        .supportedFamilies([.systemSmall, .systemMedium])
    }
}
