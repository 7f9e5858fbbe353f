import SwiftUI
import WidgetKit

@main
struct AuroraWidgetBundle: WidgetBundle {
    var body: some Widget {
        AuroraWidget()
    }
}
