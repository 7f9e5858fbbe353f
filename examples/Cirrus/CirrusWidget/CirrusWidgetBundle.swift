import SwiftUI
import WidgetKit

@main
struct CirrusWidgetBundle: WidgetBundle {
    var body: some Widget {
        CirrusWidget()
    }
}
