import SwiftUI

struct ContentView: View {
    var body: some View {
        VStack {
            Image(systemName: "cloud.sun")
                .imageScale(.large)
            Text("Nimbus")
        }
    }
}

#Preview {
    ContentView()
}
