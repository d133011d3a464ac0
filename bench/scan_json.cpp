// Reads JSON for the bench script, which must not rely on python3 or jq being installed.
//
//   scan_json entries FILE    the scanner's JSON lines, one object per rule, as NUL-separated records:
//                             R id total count   per rule, then  E id path size  per entry
//   scan_json manifest FILE   a model manifest's total: the "size" of each of "layers" and of
//                             "config", where a missing or non-numeric size adds 0
//
// Builds with one plain compiler call: g++ -O2 -std=c++20 bench/scan_json.cpp -o scan_json

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace {

struct Value;
using Object = std::map<std::string, Value, std::less<>>;
using Array = std::vector<Value>;

// A number keeps its text, so that 64-bit sizes come through exactly.
struct Number {
    std::string text;
};

struct Value {
    std::variant<std::nullptr_t, bool, Number, std::string, std::shared_ptr<Array>, std::shared_ptr<Object>> v;

    const Object* object() const {
        const auto* p = std::get_if<std::shared_ptr<Object>>(&v);
        return p ? p->get() : nullptr;
    }
    const Array* array() const {
        const auto* p = std::get_if<std::shared_ptr<Array>>(&v);
        return p ? p->get() : nullptr;
    }
    const std::string* string() const { return std::get_if<std::string>(&v); }
    // An integer, or nothing for any other value (a fraction or exponent included).
    std::optional<std::int64_t> integer() const {
        const auto* n = std::get_if<Number>(&v);
        if (!n || n->text.find_first_of(".eE") != std::string::npos) return std::nullopt;
        try {
            return std::stoll(n->text);
        } catch (...) {
            return std::nullopt;
        }
    }
    const Value* get(std::string_view key) const {
        const Object* o = object();
        if (!o) return nullptr;
        const auto it = o->find(key);
        return it == o->end() ? nullptr : &it->second;
    }
};

class Parser {
public:
    explicit Parser(std::string_view text) : s_(text) {}

    // The whole text as one value, or nothing if it is not valid JSON.
    std::optional<Value> document() {
        auto v = value();
        skip();
        if (!v || pos_ != s_.size()) return std::nullopt;
        return v;
    }

private:
    void skip() {
        while (pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t' || s_[pos_] == '\n' || s_[pos_] == '\r'))
            ++pos_;
    }
    bool eat(char c) {
        skip();
        if (pos_ < s_.size() && s_[pos_] == c) {
            ++pos_;
            return true;
        }
        return false;
    }
    bool literal(std::string_view word) {
        if (s_.substr(pos_, word.size()) != word) return false;
        pos_ += word.size();
        return true;
    }

    std::optional<Value> value() {
        if (++depth_ > 200) return std::nullopt;
        skip();
        std::optional<Value> out;
        if (pos_ >= s_.size()) out = std::nullopt;
        else if (s_[pos_] == '{') out = object();
        else if (s_[pos_] == '[') out = array();
        else if (s_[pos_] == '"') {
            if (auto str = string()) out = Value{std::move(*str)};
        } else if (literal("true")) out = Value{true};
        else if (literal("false")) out = Value{false};
        else if (literal("null")) out = Value{nullptr};
        else out = number();
        --depth_;
        return out;
    }

    std::optional<Value> number() {
        const std::size_t start = pos_;
        if (pos_ < s_.size() && s_[pos_] == '-') ++pos_;
        const std::size_t digits = pos_;
        while (pos_ < s_.size() && std::string_view("0123456789.eE+-").find(s_[pos_]) != std::string_view::npos) ++pos_;
        if (pos_ == digits) return std::nullopt;
        return Value{Number{std::string(s_.substr(start, pos_ - start))}};
    }

    static void appendUtf8(std::string& out, std::uint32_t cp) {
        if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x800) {
            out += static_cast<char>(0xC0 | (cp >> 6));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            out += static_cast<char>(0xE0 | (cp >> 12));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (cp >> 18));
            out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        }
    }

    std::optional<std::uint32_t> hex4() {
        if (pos_ + 4 > s_.size()) return std::nullopt;
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = s_[pos_++];
            v <<= 4;
            if (c >= '0' && c <= '9') v |= static_cast<std::uint32_t>(c - '0');
            else if (c >= 'a' && c <= 'f') v |= static_cast<std::uint32_t>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F') v |= static_cast<std::uint32_t>(c - 'A' + 10);
            else return std::nullopt;
        }
        return v;
    }

    std::optional<std::string> string() {
        ++pos_; // the opening quote
        std::string out;
        while (pos_ < s_.size()) {
            const char c = s_[pos_++];
            if (c == '"') return out;
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos_ >= s_.size()) return std::nullopt;
            const char e = s_[pos_++];
            switch (e) {
            case '"': out += '"'; break;
            case '\\': out += '\\'; break;
            case '/': out += '/'; break;
            case 'b': out += '\b'; break;
            case 'f': out += '\f'; break;
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            case 't': out += '\t'; break;
            case 'u': {
                auto cp = hex4();
                if (!cp) return std::nullopt;
                if (*cp >= 0xD800 && *cp < 0xDC00 && s_.substr(pos_, 2) == "\\u") {
                    pos_ += 2;
                    const auto low = hex4();
                    if (!low || *low < 0xDC00 || *low >= 0xE000) return std::nullopt;
                    *cp = 0x10000 + ((*cp - 0xD800) << 10) + (*low - 0xDC00);
                }
                appendUtf8(out, *cp);
                break;
            }
            default: return std::nullopt;
            }
        }
        return std::nullopt;
    }

    std::optional<Value> array() {
        ++pos_;
        auto arr = std::make_shared<Array>();
        if (eat(']')) return Value{arr};
        do {
            auto v = value();
            if (!v) return std::nullopt;
            arr->push_back(std::move(*v));
        } while (eat(','));
        if (!eat(']')) return std::nullopt;
        return Value{arr};
    }

    std::optional<Value> object() {
        ++pos_;
        auto obj = std::make_shared<Object>();
        if (eat('}')) return Value{obj};
        do {
            skip();
            if (pos_ >= s_.size() || s_[pos_] != '"') return std::nullopt;
            auto key = string();
            if (!key || !eat(':')) return std::nullopt;
            auto v = value();
            if (!v) return std::nullopt;
            (*obj)[*key] = std::move(*v);
        } while (eat(','));
        if (!eat('}')) return std::nullopt;
        return Value{obj};
    }

    std::string_view s_;
    std::size_t pos_ = 0;
    int depth_ = 0;
};

void field(const std::string& s) {
    std::fwrite(s.data(), 1, s.size(), stdout);
    std::fputc('\0', stdout);
}

std::string numberText(const Value* v) {
    if (!v) return "";
    if (const auto* n = std::get_if<Number>(&v->v)) return n->text;
    return "";
}

int entries(const char* path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "scan_json: cannot read %s\n", path);
        return 2;
    }
    std::string line;
    int lineNo = 0;
    bool done = false;
    while (std::getline(in, line)) {
        ++lineNo;
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        const auto doc = Parser(line).document();
        if (!doc || !doc->object()) {
            std::fprintf(stderr, "scan_json: %s:%d: not a JSON object\n", path, lineNo);
            return 2;
        }
        if (doc->get("done")) {
            done = true;
            continue;
        }
        const Value* id = doc->get("id");
        const Value* list = doc->get("entries");
        if (!id || !id->string() || !list || !list->array()) {
            std::fprintf(stderr, "scan_json: %s:%d: no \"id\" and \"entries\"\n", path, lineNo);
            return 2;
        }
        field("R");
        field(*id->string());
        field(numberText(doc->get("total")));
        field(std::to_string(list->array()->size()));
        for (const Value& e : *list->array()) {
            const Value* p = e.get("path");
            if (!p || !p->string()) {
                std::fprintf(stderr, "scan_json: %s:%d: an entry without \"path\"\n", path, lineNo);
                return 2;
            }
            field("E");
            field(*id->string());
            field(*p->string());
            field(numberText(e.get("size")));
        }
    }
    if (!done) std::fprintf(stderr, "scan_json: %s: no closing {\"done\":true} line\n", path);
    return done ? 0 : 3;
}

int manifest(const char* path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream buffer;
    buffer << in.rdbuf();
    const auto doc = Parser(buffer.str()).document();
    if (!in || !doc || !doc->object()) return 1;
    std::int64_t total = 0;
    if (const Value* layers = doc->get("layers"); layers && layers->array())
        for (const Value& l : *layers->array())
            if (const Value* size = l.get("size")) total += size->integer().value_or(0);
    if (const Value* config = doc->get("config"))
        if (const Value* size = config->get("size")) total += size->integer().value_or(0);
    std::printf("%lld\n", static_cast<long long>(total));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc == 3 ? argv[1] : "";
    if (mode == "entries") return entries(argv[2]);
    if (mode == "manifest") return manifest(argv[2]);
    std::fprintf(stderr, "usage: scan_json entries SCAN_JSON_LINES | scan_json manifest FILE\n");
    return 2;
}
