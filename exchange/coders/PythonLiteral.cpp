#include "exchange/coders/PythonLiteral.h"

#include <cctype>

#include "exchange/coders/TextSupport.h"

namespace PAL::python {

namespace {

// Lists nest three deep in the files; the limit only keeps a hostile line from exhausting the stack.
constexpr int maxDepth = 16;

struct Invalid {};

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    Call call() {
        Call result;
        skipBlanks();
        result.name = identifier();
        skipBlanks();
        expect('(');
        result.arguments = sequence(')', 0);
        skipBlanks();
        take(';');
        skipBlanks();
        if (pos_ != text_.size() && peek() != '#') throw Invalid{};  // a comment may end the line
        return result;
    }

private:
    char peek(std::size_t ahead = 0) const { return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0'; }
    char next() {
        if (pos_ >= text_.size()) throw Invalid{};
        return text_[pos_++];
    }
    bool take(char c) {
        if (peek() != c || pos_ >= text_.size()) return false;
        ++pos_;
        return true;
    }
    void expect(char c) {
        if (!take(c)) throw Invalid{};
    }
    void skipBlanks() {
        while (textfile::isBlank(peek())) ++pos_;
    }

    std::string identifier() {
        const std::size_t start = pos_;
        while (std::isalnum(static_cast<unsigned char>(peek())) || peek() == '_') ++pos_;
        if (pos_ == start || std::isdigit(static_cast<unsigned char>(text_[start]))) throw Invalid{};
        return std::string(text_.substr(start, pos_ - start));
    }

    // Items up to `close`, a trailing comma allowed, as Python allows it.
    std::vector<Value> sequence(char close, int depth) {
        if (depth > maxDepth) throw Invalid{};
        std::vector<Value> items;
        skipBlanks();
        if (take(close)) return items;
        for (;;) {
            items.push_back(value(depth));
            skipBlanks();
            if (take(close)) return items;
            expect(',');
            skipBlanks();
            if (take(close)) return items;
        }
    }

    Value value(int depth) {
        skipBlanks();
        const char c = peek();
        if (c == '[' || c == '(') {
            ++pos_;
            Value list;
            list.kind = Value::Kind::list;
            list.items = sequence(c == '[' ? ']' : ')', depth + 1);
            return list;
        }
        const bool prefixed = (c == 'u' || c == 'U' || c == 'b' || c == 'B') && (peek(1) == '\'' || peek(1) == '"');
        if (prefixed) ++pos_;
        if (peek() == '\'' || peek() == '"') return string(prefixed && (c == 'u' || c == 'U'));
        return number();
    }

    Value number() {
        const std::size_t start = pos_;
        if (peek() == '+' || peek() == '-') ++pos_;
        while (std::isdigit(static_cast<unsigned char>(peek())) || peek() == '.' || peek() == 'e' || peek() == 'E') {
            const bool exponent = peek() == 'e' || peek() == 'E';
            ++pos_;
            if (exponent && (peek() == '+' || peek() == '-')) ++pos_;
        }
        const auto parsed = textfile::number(text_.substr(start, pos_ - start));
        if (!parsed) throw Invalid{};
        if (!take('L')) take('l');  // Python 2 long integers
        Value result;
        result.number = *parsed;
        return result;
    }

    // A byte string collects bytes and is read as UTF-8 (Latin-1 when it is not); a unicode string's
    // escapes are code points.
    Value string(bool unicode) {
        const char quote = next();
        std::string out;
        for (char c = next(); c != quote; c = next()) {
            if (c != '\\') {
                out.push_back(c);
                continue;
            }
            escape(out, unicode);
        }
        Value result;
        result.kind = Value::Kind::string;
        result.text = unicode || textfile::isValidUTF8(out) ? std::move(out) : textfile::latin1ToUTF8(out);
        return result;
    }

    void escape(std::string& out, bool unicode) {
        const char c = next();
        switch (c) {
        case '\\': case '\'': case '"': out.push_back(c); return;
        case 'n': out.push_back('\n'); return;
        case 't': out.push_back('\t'); return;
        case 'r': out.push_back('\r'); return;
        case 'a': out.push_back('\a'); return;
        case 'b': out.push_back('\b'); return;
        case 'f': out.push_back('\f'); return;
        case 'v': out.push_back('\v'); return;
        case 'x': return put(out, unicode, hexDigits(2));
        case 'u': case 'U':
            if (unicode) return put(out, true, codePoint(c == 'u' ? 4 : 8));
            break;
        default:
            if (c >= '0' && c <= '7') {
                std::uint32_t value = static_cast<std::uint32_t>(c - '0');
                for (int i = 0; i < 2 && peek() >= '0' && peek() <= '7'; ++i) value = value * 8 + static_cast<std::uint32_t>(next() - '0');
                return put(out, unicode, unicode ? value : value & 0xFF);
            }
        }
        out.push_back('\\');  // Python keeps an unknown escape as written
        out.push_back(c);
    }

    static void put(std::string& out, bool unicode, std::uint32_t value) {
        if (unicode) textfile::appendUTF8(out, value);
        else out.push_back(static_cast<char>(value));
    }

    std::uint32_t hexDigits(int count) {
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            const int digit = hexValue(next());
            if (digit < 0) throw Invalid{};
            value = value << 4 | static_cast<std::uint32_t>(digit);
        }
        return value;
    }

    // Python 2 on narrow builds wrote characters beyond the first plane as surrogate pairs.
    std::uint32_t codePoint(int digits) {
        const std::uint32_t value = hexDigits(digits);
        if (value > 0x10FFFF) throw Invalid{};
        if (value >= 0xDC00 && value < 0xE000) return 0xFFFD;
        if (value < 0xD800 || value >= 0xDC00) return value;
        if (peek() != '\\' || peek(1) != 'u') return 0xFFFD;
        const std::size_t resume = pos_;
        pos_ += 2;
        const std::uint32_t low = hexDigits(4);
        if (low >= 0xDC00 && low < 0xE000) return 0x10000 + ((value - 0xD800) << 10) + (low - 0xDC00);
        pos_ = resume;
        return 0xFFFD;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
};

}  // namespace

std::optional<Call> parseCall(std::string_view line) {
    try {
        return Parser(line).call();
    } catch (const Invalid&) {
        return std::nullopt;
    }
}

std::string literal(std::string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out = "'";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\' || c == '\'') {
            out += '\\';
            out += c;
        } else if (c == '\n' || c == '\r') {
            out += ' ';
        } else if (byte < 0x20 || byte >= 0x7F) {
            out += "\\x";
            out += digits[byte >> 4];
            out += digits[byte & 0xF];
        } else {
            out += c;
        }
    }
    return out + "'";
}

}  // namespace PAL::python
