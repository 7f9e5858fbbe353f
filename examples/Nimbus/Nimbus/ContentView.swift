import SwiftUI

struct ContentView: View {
    @AppStorage("lastRefresh", store: UserDefaults(suiteName: "group.com.example.nimbus"))
    private var lastRefresh: Double = 0

    var body: some View {
        VStack(spacing: 12) {
            Image(systemName: "cloud.sun")
                .imageScale(.large)
                .foregroundStyle(.tint)
            Text("Nimbus")
                .font(.largeTitle)
            if lastRefresh > 0 {
                Text(Date(timeIntervalSince1970: lastRefresh), style: .relative)
                    .foregroundStyle(.secondary)
            }
        }
        .padding()
        .onAppear { lastRefresh = Date().timeIntervalSince1970 }
    }
}

#Preview {
    ContentView()
}
