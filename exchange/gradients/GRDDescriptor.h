#pragma once
// Photoshop's serialised action descriptor, the body of its version 5 gradient files: a tree of keyed
// values (objects, lists, numbers, texts, enumerations). Read whole into a small tree; values of types
// a gradient never holds are read past and kept as their type alone.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/BytesReader.h"

namespace PAL::grd {

struct Value {
    std::string type;               // the four-character type: "Objc", "VlLs", "doub", "long", "UntF", "TEXT", "enum", ...
    double number = 0;              // doub, UntF, long, comp, bool
    std::string unit;               // UntF: "#Prc", "#Ang", ...
    std::string text;               // TEXT; enum: the value
    std::string classID;            // Objc: the class; enum: the enumeration
    std::vector<std::string> keys;  // Objc: the key of each child
    std::vector<Value> children;    // Objc: the items; VlLs: the entries

    // An object's value for a key, or nullptr.
    const Value* find(std::string_view key) const;
    // An object's number for a key (doub, long or UntF), or nothing.
    std::optional<double> numberAt(std::string_view key) const;
};

// A descriptor (its name, class and items) at the reader's position, as an "Objc" value. Throws
// CommonError invalidFormat on a type it cannot read past, on nesting deeper than 32, and when the
// bytes end early.
Value readDescriptor(BytesParser::BytesReader& reader);

}  // namespace PAL::grd
