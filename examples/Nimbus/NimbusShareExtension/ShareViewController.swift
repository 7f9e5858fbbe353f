import Social
import UIKit
import UniformTypeIdentifiers

final class ShareViewController: SLComposeServiceViewController {
    private let defaults = UserDefaults(suiteName: "group.com.example.nimbus.shared")

    override func isContentValid() -> Bool {
        !(contentText ?? "").isEmpty
    }

    override func didSelectPost() {
        var pending = defaults?.stringArray(forKey: "pendingShares") ?? []
        pending.append(contentText ?? "")
        defaults?.set(pending, forKey: "pendingShares")
        extensionContext?.completeRequest(returningItems: [], completionHandler: nil)
    }

    override func configurationItems() -> [Any]! {
        []
    }
}
