#include "tools/xpic/json_printer.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr size_t kLineWidth = 120;
constexpr size_t kRootIndent = 2;

size_t Width(std::string_view text) {
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string KeyText(const std::string& key) {
    return Json(key).dump() + ": ";
}

// On one line.
std::string Compact(const Json& value) {
    if (!value.is_structured()) {
        return value.dump();
    }
    std::string text;
    for (const auto& [key, member] : value.items()) {
        text.append(text.empty() ? "" : ", ").append(value.is_object() ? KeyText(key) : "").append(Compact(member));
    }
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

bool HoldsObjects(const Json& value) {
    return value.is_array() &&
           std::any_of(value.begin(), value.end(), [](const Json& element) { return element.is_object(); });
}

class SourcePrinter {
  public:
    explicit SourcePrinter(std::string_view comment) {
        if (!comment.empty()) {
            Put("// ");
            Put(comment);
            NewLine(0);
        }
    }

    std::string Print(const Json& root) {
        Put("{");
        size_t left = root.size();
        bool wasOneLine = true;
        bool wasApart = true;  // a blank line stands before the last member
        for (const auto& [key, member] : root.items()) {
            const size_t reserve = --left == 0 ? 0 : 1;
            const std::string line = KeyText(key) + Compact(member);
            const bool listed = HoldsObjects(member) && member.size() > 1;
            const bool oneLine = !listed && kRootIndent + Width(line) + reserve <= kLineWidth;
            // Lists stand apart, together with the line that introduces them.
            const bool apart = !wasOneLine || (!oneLine && !wasApart);
            if (apart) {
                out_ += '\n';
            }
            NewLine(kRootIndent);
            if (oneLine) {
                Put(line);
            } else {
                Put(KeyText(key));
                member.is_object() ? PutBlock(member, kRootIndent) : PutBroken(member, kRootIndent);
            }
            Put(reserve == 0 ? "" : ",");
            wasOneLine = oneLine;
            wasApart = apart;
        }
        NewLine(0);
        return out_ + "}\n";
    }

  private:
    void Put(std::string_view text) {
        out_ += text;
        column_ += Width(text);
    }

    void NewLine(size_t indent) {
        out_ += '\n';
        out_.append(indent, ' ');
        column_ = indent;
    }

    bool Fits(std::string_view text, size_t reserve) const { return column_ + Width(text) + reserve <= kLineWidth; }

    // A value whose object or array begins in column `indent`; `reserve` characters follow it on its last line.
    void PutValue(const Json& value, size_t indent, size_t reserve) {
        const std::string compact = Compact(value);
        if (!value.is_structured() || value.empty() || Fits(compact, reserve)) {
            Put(compact);
        } else {
            PutBroken(value, indent, reserve);
        }
    }

    void PutBroken(const Json& value, size_t indent, size_t reserve = 0) {
        if (value.is_object()) {
            PutFilled(value, indent, reserve);
        } else if (value.is_array()) {
            PutList(value, indent);
        } else {
            Put(Compact(value));
        }
    }

    // An object at the root: one member a line.
    void PutBlock(const Json& object, size_t indent) {
        Put("{");
        size_t left = object.size();
        for (const auto& [key, member] : object.items()) {
            NewLine(indent + 2);
            Put(KeyText(key));
            const size_t reserve = --left == 0 ? 0 : 1;
            PutValue(member, indent + 2, reserve);
            Put(reserve == 0 ? "" : ",");
        }
        NewLine(indent);
        Put("}");
    }

    // A record: its members fill the lines.
    void PutFilled(const Json& object, size_t indent, size_t reserve) {
        Put("{");
        size_t left = object.size();
        for (const auto& [key, member] : object.items()) {
            const size_t after = --left == 0 ? 1 + reserve : 1;
            const bool isFirst = left + 1 == object.size();
            if (!isFirst) {
                if (Fits(" " + KeyText(key) + Compact(member), after)) {
                    Put(" ");
                } else {
                    NewLine(indent + 1);
                }
            }
            Put(KeyText(key));
            PutValue(member, indent + 1, after);
            Put(left == 0 ? "}" : ",");
        }
    }

    // A list: records on lines of their own, other values fill the lines.
    void PutList(const Json& list, size_t indent) {
        Put("[");
        bool fresh = true;  // nothing can be added to the line
        size_t left = list.size();
        for (const Json& element : list) {
            const size_t after = --left == 0 ? 0 : 1;
            if (!fresh && !element.is_object() && Fits(" " + Compact(element), after)) {
                Put(" ");
            } else {
                NewLine(indent + 2);
            }
            PutValue(element, indent + 2, after);
            Put(after == 0 ? "" : ",");
            fresh = element.is_object();
        }
        NewLine(indent);
        Put("]");
    }

    std::string out_;
    size_t column_ = 0;
};

}  // namespace

std::string PrintSource(const Json& root, std::string_view comment) {
    return SourcePrinter(comment).Print(root);
}

}  // namespace velmora
