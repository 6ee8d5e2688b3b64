// The whole script is parsed before anything is written, so a malformed one
// leaves the registry as it was.
#include "COMDll/registry_script.h"

#include <optional>
#include <vector>

#include "COMDll/registry_writer.h"
#include "core/bstr_t.h"

namespace brevo {
namespace {

using View = std::basic_string_view<OLECHAR>;

struct Malformed {};

struct NamedValue {
  WideText name;
  WideText data;
};

struct Key {
  WideText name;
  bool noRemove = false;
  bool forceRemove = false;
  std::optional<WideText> defaultValue;
  std::vector<NamedValue> values;
  std::vector<Key> subkeys;
};

// Keywords and the root compare without regard to case.
bool IsWord(View text, std::string_view word) {
  const auto fold = [](unsigned c) { return c >= 'a' && c <= 'z' ? c - 32 : c; };
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (fold(text[i]) != fold(static_cast<unsigned char>(word[i]))) return false;
  }
  return true;
}

// The text a %NAME% mark stands for.
View VariableValue(View name, std::span<const ScriptVariable> variables) {
  if (name.empty()) return OLESTR("%");
  for (const ScriptVariable& variable : variables) {
    if (variable.name == name) return variable.value;
  }
  throw Malformed{};
}

WideText Substituted(View script, std::span<const ScriptVariable> variables) {
  WideText result;
  for (std::size_t at = 0;;) {
    const std::size_t mark = script.find(OLESTR('%'), at);
    result.append(script.substr(at, mark - at));
    if (mark == View::npos) return result;
    const std::size_t end = script.find(OLESTR('%'), mark + 1);
    if (end == View::npos) throw Malformed{};
    result.append(VariableValue(script.substr(mark + 1, end - mark - 1), variables));
    at = end + 1;
  }
}

enum class Kind { kWord, kQuoted, kOpen, kClose, kAssign, kEnd };

struct Token {
  Kind kind;
  View text;
};

bool IsBlank(OLECHAR c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::vector<Token> Tokens(View text) {
  std::vector<Token> tokens;
  const View marks = OLESTR("{}=");
  constexpr Kind kMarkKinds[] = {Kind::kOpen, Kind::kClose, Kind::kAssign};
  for (std::size_t at = 0; at < text.size();) {
    const OLECHAR c = text[at];
    if (IsBlank(c)) {
      ++at;
    } else if (const std::size_t mark = marks.find(c); mark != View::npos) {
      tokens.push_back({kMarkKinds[mark], text.substr(at++, 1)});
    } else if (c == '\'') {
      const std::size_t end = text.find(OLESTR('\''), at + 1);
      if (end == View::npos) throw Malformed{};
      tokens.push_back({Kind::kQuoted, text.substr(at + 1, end - at - 1)});
      at = end + 1;
    } else {
      const auto inWord = [&](OLECHAR ch) { return !IsBlank(ch) && ch != '\'' && marks.find(ch) == View::npos; };
      std::size_t end = at;
      while (end < text.size() && inWord(text[end])) ++end;
      tokens.push_back({Kind::kWord, text.substr(at, end - at)});
      at = end;
    }
  }
  tokens.push_back({Kind::kEnd, {}});
  return tokens;
}

class Parser {
 public:
  explicit Parser(View text) : tokens_(Tokens(text)) {}

  // The roots, each a kept key over the classes root.
  std::vector<Key> Script() {
    std::vector<Key> roots;
    while (Peek().kind != Kind::kEnd) {
      if (!IsWord(Take().text, "HKCR")) throw Malformed{};
      Key& root = roots.emplace_back();
      root.noRemove = true;
      Expect(Kind::kOpen);
      Body(root);
    }
    return roots;
  }

 private:
  const Token& Peek() const { return tokens_[at_]; }
  const Token& Take() { return tokens_[at_ < tokens_.size() - 1 ? at_++ : at_]; }
  bool TakeIf(Kind kind) {
    if (Peek().kind != kind) return false;
    ++at_;
    return true;
  }
  bool TakeWord(std::string_view word) {
    if (Peek().kind != Kind::kWord || !IsWord(Peek().text, word)) return false;
    ++at_;
    return true;
  }
  void Expect(Kind kind) {
    if (!TakeIf(kind)) throw Malformed{};
  }

  WideText Name() {
    const Token& token = Take();
    if ((token.kind != Kind::kWord && token.kind != Kind::kQuoted) || token.text.empty()) throw Malformed{};
    return WideText(token.text);
  }
  // "= s 'text'": string values only.
  WideText StringValue() {
    Expect(Kind::kAssign);
    if (!TakeWord("s") || Peek().kind != Kind::kQuoted) throw Malformed{};
    return WideText(Take().text);
  }

  void Body(Key& key) {
    while (!TakeIf(Kind::kClose)) {
      if (Peek().kind == Kind::kEnd) throw Malformed{};
      if (TakeWord("val")) {
        WideText name = Name();
        key.values.push_back({std::move(name), StringValue()});
      } else {
        key.subkeys.push_back(Subkey());
      }
    }
  }

  Key Subkey() {
    Key key;
    for (;;) {
      if (TakeWord("NoRemove")) {
        key.noRemove = true;
      } else if (TakeWord("ForceRemove")) {
        key.forceRemove = true;
      } else {
        break;
      }
    }
    key.name = Name();
    if (Peek().kind == Kind::kAssign) key.defaultValue = StringValue();
    if (TakeIf(Kind::kOpen)) Body(key);
    return key;
  }

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
};

WideText Below(const WideText& path, const WideText& name) { return path.empty() ? name : path + OLESTR('\\') + name; }

void Register(RegistryWriter& writer, const Key& key, const WideText& path) {
  if (key.forceRemove) writer.Delete(path);
  if (key.defaultValue) {
    writer.Set(path, nullptr, *key.defaultValue);
  } else if (!path.empty()) {
    writer.Key(path);
  }
  for (const NamedValue& value : key.values) writer.Set(path, value.name.c_str(), value.data);
  for (const Key& subkey : key.subkeys) Register(writer, subkey, Below(path, subkey.name));
}

// The named values of a kept key stay with it.
void Unregister(RegistryWriter& writer, const Key& key, const WideText& path) {
  if (!key.noRemove) {
    writer.Delete(path);
    return;
  }
  for (const Key& subkey : key.subkeys) Unregister(writer, subkey, Below(path, subkey.name));
}

}  // namespace

HRESULT RunRegistryScript(std::string_view script, std::span<const ScriptVariable> variables,
                          ScriptMode mode) noexcept {
  try {
    const _bstr_t wide(CheckedAllocation(platform::AnsiToBstr(script.data(), script.size())), false);
    const WideText text = Substituted(View(wide, wide.length()), variables);
    const auto apply = mode == ScriptMode::kRegister ? &Register : &Unregister;
    RegistryWriter writer;
    for (const Key& root : Parser(text).Script()) apply(writer, root, WideText());
    return writer.Result();
  } catch (const Malformed&) {
    return kMalformedScript;
  } catch (...) {  // the allocations
    return E_OUTOFMEMORY;
  }
}

}  // namespace brevo
