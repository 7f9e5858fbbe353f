import XCTest
@testable import Cirrus

final class CirrusTests: XCTestCase {
    func testSharedDefaultsAreReachable() throws {
        let defaults = try XCTUnwrap(UserDefaults(suiteName: "group.com.example.cirrus"))
        defaults.set(21.5, forKey: "temperature")
        XCTAssertEqual(defaults.double(forKey: "temperature"), 21.5)
    }
}
