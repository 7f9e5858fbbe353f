#pragma once

namespace kelvane {

// One visitor from several lambdas, for std::visit over the record variants:
// `std::visit(Overloaded{[](const PlistSource&) {...}, ...}, source)`.
template <class... Handlers> struct Overloaded : Handlers... { using Handlers::operator()...; };
template <class... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

} // namespace kelvane
