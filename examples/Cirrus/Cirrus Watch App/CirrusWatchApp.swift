import SwiftUI

@main
struct CirrusWatchApp: App {
    var body: some Scene {
        WindowGroup {
            Label("Cirrus", systemImage: "cloud.sun")
        }
    }
}
