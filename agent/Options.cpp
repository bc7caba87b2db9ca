#include "agent/Options.h"

#include "sources/database/Database.h"

namespace agent {

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw UsageError(what + "; rova-agent --help tells what there is");
}

/// The word behind an option, which both of "--state FILE" and "--state=FILE" have.
class Words {
 public:
  explicit Words(std::span<const char* const> words) : left_(words) {}

  bool next() {
    if (left_.empty()) return false;
    const std::string word = take();
    const auto equals = word.find('=');
    option_ = word.substr(0, equals);
    value_.reset();
    if (equals != word.npos) value_ = word.substr(equals + 1);
    return true;
  }
  const std::string& option() const { return option_; }
  std::string value() {
    if (!value_ && left_.empty()) fail(option_ + ": found nothing behind it, expected a value");
    std::string value = value_ ? *value_ : take();
    if (value.empty()) fail(option_ + ": found an empty value");
    return value;
  }
  void requireNoValue() const {
    if (value_) fail(option_ + ": takes no value, found \"" + *value_ + "\"");
  }

 private:
  std::string take() {
    const std::string word = left_.front();
    left_ = left_.subspan(1);
    return word;
  }

  std::span<const char* const> left_;
  std::string option_;
  std::optional<std::string> value_;
};

} // namespace

std::optional<std::string> printedOnly(std::span<const char* const> words) {
  for (const std::string word : words) {
    if (word == "--help" || word == "-h") return helpText;
    if (word == "--version") return "rova-agent " ROVA_VERSION "\n";
  }
  return {};
}

Options readOptions(std::span<const char* const> words) {
  Options options;
  options.state = sources::database::defaultPath;
  for (Words each(words); each.next();) {
    if (each.option() == "--netns") {
      options.netns = each.value();
    } else if (each.option() == "--state") {
      options.state = each.value();
    } else if (each.option() == "--group") {
      options.group = each.value();
    } else if (each.option() == "--once") {
      each.requireNoValue();
      options.once = true;
    } else {
      fail("\"" + each.option() + "\": found where an option is expected");
    }
  }
  return options;
}

} // namespace agent
