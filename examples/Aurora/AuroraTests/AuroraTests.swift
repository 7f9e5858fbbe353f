import XCTest
@testable import Aurora

final class AuroraTests: XCTestCase {
    func testSharedDefaultsAreReachable() throws {
        let defaults = try XCTUnwrap(UserDefaults(suiteName: "group.com.example.aurora"))
        defaults.set(42.0, forKey: "lastRefresh")
        XCTAssertEqual(defaults.double(forKey: "lastRefresh"), 42.0)
    }
}
