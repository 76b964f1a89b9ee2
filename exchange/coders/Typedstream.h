#pragma once
// The typed stream of the old Objective-C archiver: a header, then typed groups — a string of type codes
// followed by one value per code. Strings and objects are written once and referred back to afterwards,
// so a reader keeps a table of each. Enough of it to read and write any archive made of integers,
// floats, strings and objects; arrays, structures and other rare codes are refused.
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace PAL::typedstream {

struct Value {
    enum class Kind { nil, integer, real, bytes, object };
    Kind kind = Kind::nil;
    int64_t integer = 0;
    double real = 0;    // also set for an integer: a float slot may hold the integer form
    std::string_view bytes;  // every kind of string, as stored; valid while the reader lives
    size_t object = 0;  // index into the reader's table
};

struct Group {
    std::string types;
    std::vector<Value> values;
};

// Classes and objects share one table, numbered in the order they appear in the stream. Its texts point
// into the reader's tables and stay valid while the reader lives.
struct Entry {
    bool isClass = false;
    std::string_view className;  // an object's own class, or the class itself
    int64_t classVersion = 0;
    std::vector<Group> groups;  // an object's contents; empty for a class
};

// Every failure — bad header, a tag where a value belongs, a reference to nothing, bytes that run out —
// is CommonError invalidFormat.
class Reader {
public:
    // Reads the header: "streamtyped" streams are little endian, "typedstream" ones big endian.
    explicit Reader(std::string_view bytes);

    bool atEnd() const { return position_ == bytes_.size(); }
    // The next group at the top level of the stream.
    Group readGroup();
    // An object (not a class) from the table.
    const Entry& object(size_t index) const;

private:
    uint8_t next();
    std::string_view take(uint64_t count);
    uint64_t unsignedBits(size_t byteCount);
    int64_t integerAfter(uint8_t head);
    int64_t readInteger() { return integerAfter(next()); }
    uint64_t readUnsigned();
    double readReal(size_t width);
    size_t reference(uint8_t head, size_t tableSize);
    Value readSharedString();
    Value readObject(size_t depth);
    size_t readClassChain();
    Group readGroup(size_t depth);
    Value readValue(char code, size_t depth);

    std::string_view bytes_;
    size_t position_ = 0;
    bool bigEndian_ = false;
    std::deque<std::string> strings_;  // a deque, so that values can point into it as it grows
    std::vector<Entry> entries_;
};

// Writes little-endian "streamtyped" streams, as AppKit does: each string and class once, then references.
class Writer {
public:
    Writer();

    // Starts a group; the values that follow must match the codes.
    void group(std::string_view types);
    void integer(int64_t value);
    // Whole values take the integer form.
    void real(float value);
    void byte(uint8_t value);  // c, C
    void nil();
    // An object of `classChain` (the class first, then each superclass); its groups follow, then endObject().
    void beginObject(const std::vector<std::pair<std::string, int64_t>>& classChain);
    void endObject();
    void unsharedString(std::string_view bytes);  // +

    const std::string& data() const { return out_; }

private:
    void sharedString(std::string_view text);
    void reference(size_t index);

    std::string out_;
    std::vector<std::string> strings_;
    std::vector<std::string> classes_;  // by table index; empty for plain objects
};

}  // namespace PAL::typedstream
