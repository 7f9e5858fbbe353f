import SwiftUI

struct ContentView: View {
    @AppStorage("temperature", store: UserDefaults(suiteName: "group.com.example.cirrus"))
    private var temperature: Double = 18

    var body: some View {
        VStack(spacing: 8) {
            Image(systemName: "cloud.sun")
                .font(.largeTitle)
            Text(Measurement(value: temperature, unit: UnitTemperature.celsius), format: .measurement(width: .abbreviated))
                .font(.title)
            #if BETA
            Text("Beta").foregroundStyle(.secondary)
            #endif
        }
        .padding()
    }
}

#Preview {
    ContentView()
}
