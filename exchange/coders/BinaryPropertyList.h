#pragma once
// Binary property lists ("bplist00"): a table of objects, an offset table and a trailer naming the top
// object. Containers refer to their members by object number.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace PAL::bplist {

// One object as read. Containers keep object numbers, never nested objects, so a list whose references
// form a cycle reads like any other: whoever follows the references bounds the walk.
struct Object {
    enum class Type { null, boolean, integer, real, date, data, string, uid, array, set, dictionary };
    Type type = Type::null;
    int64_t integer = 0;  // integer, boolean, uid
    double real = 0;      // real, date
    std::string bytes;    // data; a string as UTF-8
    std::vector<uint64_t> members;  // array and set members; a dictionary's keys, then its values
};

// Objects are read when first asked for and kept, so nothing is allocated on the strength of a stated count
// alone. Every failure is CommonError invalidFormat.
class Document {
public:
    // Checks the header, the trailer and the offset table's place.
    explicit Document(std::string_view bytes);

    uint64_t topObject() const { return topObject_; }
    const Object& object(uint64_t number) const;
    // The number of the value under a string key; nothing when the key is absent. `dictionary` must be one.
    std::optional<uint64_t> value(const Object& dictionary, std::string_view key) const;

private:
    Object parse(uint64_t offset) const;
    uint64_t bigEndian(uint64_t offset, size_t byteCount) const;

    std::string_view bytes_;
    size_t offsetSize_ = 0, referenceSize_ = 0;
    uint64_t objectCount_ = 0, topObject_ = 0, offsetTable_ = 0;
    mutable std::unordered_map<uint64_t, Object> objects_;  // by offset
    // Objects may overlap, so reading each offset once could still read the file many times over: the bytes
    // read are counted, and a file read several times over is refused.
    mutable uint64_t readBudget_;
};

// A value to write: a tree, flattened on writing. Equal strings are written once.
struct Value {
    enum class Type { integer, string, data, uid, array, dictionary };

    static Value integer(int64_t value);
    static Value string(std::string text);
    static Value data(std::string bytes);
    static Value uid(uint64_t value);
    static Value array(std::vector<Value> members);
    static Value dictionary(std::vector<std::pair<std::string, Value>> entries);

    Type type = Type::integer;
    int64_t number = 0;  // integer, uid
    std::string bytes;   // string (UTF-8), data
    std::vector<Value> members;
    std::vector<std::string> keys;  // a dictionary's keys, in the order of `members`
};

// The whole file, the top value first. Throws CommonError invalidString for a string that is not UTF-8.
std::string write(const Value& top);

}  // namespace PAL::bplist
