import SwiftUI
import WidgetKit

@main
struct NimbusWidgetBundle: WidgetBundle {
    var body: some Widget {
        NimbusWidget()
    }
}
