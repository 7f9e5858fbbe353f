import SwiftUI

@main
struct CirrusApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
