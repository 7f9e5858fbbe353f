import SwiftUI

@main
struct AuroraApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
