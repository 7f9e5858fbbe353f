#include "PlistWriters.h"

#include "plist/IsoDate.h"

#include <bit>
#include <cstdio>

namespace kelvane::plist::testing {

std::string bigEndian(std::uint64_t value, unsigned size) {
    std::string out(size, '\0');
    for (unsigned i = 0; i < size; ++i) {
        out[size - 1 - i] = static_cast<char>(value >> (8 * i));
    }
    return out;
}

std::string marker(std::uint8_t type, std::uint64_t count) {
    if (count < 15) {
        return std::string(1, static_cast<char>(type << 4 | count));
    }
    unsigned power = 0; // the count as an integer object of 2^power bytes
    while (power < 3 && count >= (std::uint64_t{1} << (8u << power))) {
        ++power;
    }
    std::string out(1, static_cast<char>(type << 4 | 0xF));
    out += static_cast<char>(0x10 | power);
    return out + bigEndian(count, 1u << power);
}

std::string assembleBinary(const std::vector<std::string>& objects, std::uint64_t top,
                           unsigned refSize) {
    std::string out = "bplist00";
    std::vector<std::uint64_t> offsets;
    for (const auto& object : objects) {
        offsets.push_back(out.size());
        out += object;
    }
    const std::uint64_t table = out.size();
    // The narrowest offsets that reach every object, as Apple's writer does.
    unsigned offsetSize = 1;
    while (offsetSize < 8 && table >= (std::uint64_t{1} << (8 * offsetSize))) {
        ++offsetSize;
    }
    for (const std::uint64_t offset : offsets) {
        out += bigEndian(offset, offsetSize);
    }
    out += std::string(6, '\0');
    out += static_cast<char>(offsetSize);
    out += static_cast<char>(refSize);
    out += bigEndian(objects.size(), 8);
    out += bigEndian(top, 8);
    out += bigEndian(table, 8);
    return out;
}

namespace {

// UTF-8 to UTF-16 code units; the tests only feed it valid text.
std::vector<std::uint16_t> toUtf16(const std::string& text) {
    std::vector<std::uint16_t> units;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t code = length == 1 ? lead : lead & (0x3F >> (length - 1));
        for (int k = 1; k < length; ++k) {
            code = code << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        }
        i += static_cast<std::size_t>(length);
        if (code >= 0x10000) {
            code -= 0x10000;
            units.push_back(static_cast<std::uint16_t>(0xD800 + (code >> 10)));
            units.push_back(static_cast<std::uint16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            units.push_back(static_cast<std::uint16_t>(code));
        }
    }
    return units;
}

class BinaryWriter {
public:
    std::size_t add(const Value& value) {
        const std::size_t index = objects_.size();
        objects_.emplace_back();
        std::string object;
        if (const auto* text = value.asString()) {
            bool ascii = true;
            for (const char c : *text) {
                ascii = ascii && static_cast<unsigned char>(c) < 0x80;
            }
            if (ascii) {
                object = marker(0x5, text->size()) + *text;
            } else {
                const auto units = toUtf16(*text);
                object = marker(0x6, units.size());
                for (const auto unit : units) {
                    object += bigEndian(unit, 2);
                }
            }
        } else if (const auto* integer = value.asInteger()) {
            object = std::string(1, '\x13') + bigEndian(static_cast<std::uint64_t>(*integer), 8);
        } else if (const auto* real = value.asReal()) {
            object = std::string(1, '\x23') + bigEndian(std::bit_cast<std::uint64_t>(*real), 8);
        } else if (const auto* boolean = value.asBoolean()) {
            object.assign(1, *boolean ? '\x09' : '\x08');
        } else if (const auto* date = value.asDate()) {
            object = std::string(1, '\x33') +
                     bigEndian(std::bit_cast<std::uint64_t>(date->secondsSince2001), 8);
        } else if (const auto* data = value.asData()) {
            object = marker(0x4, data->size()) + std::string(data->begin(), data->end());
        } else if (const auto* array = value.asArray()) {
            std::vector<std::size_t> children;
            for (const auto& element : *array) {
                children.push_back(add(element));
            }
            object = marker(0xA, children.size());
            for (const auto child : children) {
                object += bigEndian(child, 4);
            }
        } else if (const auto* dictionary = value.asDictionary()) {
            std::vector<std::size_t> keys;
            std::vector<std::size_t> values;
            for (const auto& entry : *dictionary) {
                keys.push_back(add(Value(entry.key)));
                values.push_back(add(entry.value));
            }
            object = marker(0xD, keys.size());
            for (const auto key : keys) {
                object += bigEndian(key, 4);
            }
            for (const auto child : values) {
                object += bigEndian(child, 4);
            }
        }
        objects_[index] = std::move(object);
        return index;
    }

    std::string finish() const { return assembleBinary(objects_, 0, 4); }

private:
    std::vector<std::string> objects_;
};

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string base64(const Data& data) {
    constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::uint32_t bits = data[i] << 16 | (i + 1 < data.size() ? data[i + 1] << 8 : 0) |
                                   (i + 2 < data.size() ? data[i + 2] : 0);
        out += alphabet[bits >> 18 & 63];
        out += alphabet[bits >> 12 & 63];
        out += i + 1 < data.size() ? alphabet[bits >> 6 & 63] : '=';
        out += i + 2 < data.size() ? alphabet[bits & 63] : '=';
    }
    return out;
}

void writeXmlValue(const Value& value, std::string& out) {
    if (const auto* text = value.asString()) {
        out += "<string>" + escaped(*text) + "</string>";
    } else if (const auto* integer = value.asInteger()) {
        out += "<integer>" + std::to_string(*integer) + "</integer>";
    } else if (const auto* real = value.asReal()) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.17g", *real);
        out += std::string("<real>") + buffer + "</real>";
    } else if (const auto* boolean = value.asBoolean()) {
        out += *boolean ? "<true/>" : "<false/>";
    } else if (const auto* date = value.asDate()) {
        out += "<date>" + formatIsoDate(*date) + "</date>";
    } else if (const auto* data = value.asData()) {
        out += "<data>" + base64(*data) + "</data>";
    } else if (const auto* array = value.asArray()) {
        out += "<array>\n";
        for (const auto& element : *array) {
            writeXmlValue(element, out);
            out += '\n';
        }
        out += "</array>";
    } else if (const auto* dictionary = value.asDictionary()) {
        out += "<dict>\n";
        for (const auto& entry : *dictionary) {
            out += "<key>" + escaped(entry.key) + "</key>";
            writeXmlValue(entry.value, out);
            out += '\n';
        }
        out += "</dict>";
    }
}

} // namespace

std::string writeBinary(const Value& value) {
    BinaryWriter writer;
    writer.add(value);
    return writer.finish();
}

std::string writeXml(const Value& value) {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC "
                      "\"-//Apple//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist "
                      "version=\"1.0\">\n";
    writeXmlValue(value, out);
    out += "\n</plist>\n";
    return out;
}

} // namespace kelvane::plist::testing
