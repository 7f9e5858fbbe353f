import SwiftUI

struct ContentView: View {
    @AppStorage("lastRefresh", store: UserDefaults(suiteName: "group.com.example.aurora"))
    private var lastRefresh: Double = 0

    var body: some View {
        VStack(spacing: 12) {
            Image(systemName: "sparkles")
                .imageScale(.large)
                .foregroundStyle(.tint)
            Text("Aurora")
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
