import SwiftUI

@main
struct AuroraWatchApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
