import SwiftUI

@main
struct NimbusApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
