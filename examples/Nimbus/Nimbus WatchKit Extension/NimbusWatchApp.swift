import SwiftUI

@main
struct NimbusWatchApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
