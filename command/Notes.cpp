#include "command/Notes.h"

#include "sources/SourceError.h"

#include <cerrno>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace command {

namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

/// A file that has no name and goes with the object.
class MemoryFile {
 public:
  MemoryFile() : descriptor_(memfd_create("rova-document", MFD_CLOEXEC)) {
    if (descriptor_ < 0) fail("made");
  }
  ~MemoryFile() { close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int descriptor() const { return descriptor_; }
  std::string text() const {
    std::string text(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
    const auto got = pread(descriptor_, text.data(), text.size(), 0);
    if (got != static_cast<ssize_t>(text.size())) fail("read");
    return text;
  }

 private:
  [[noreturn]] static void fail(const char* what) {
    throw sources::SourceError(std::string("a file in memory cannot be ") + what + ": " +
                               std::strerror(errno));
  }
  int descriptor_;
};

/// What `print(printer)` prints as a model: members without braces.
template <class Print>
std::string membersOf(Print&& print) {
  const MemoryFile file;
  scrivo::Printer printer(file.descriptor(), scrivo::modelFormat);
  print(printer);
  printer.close();
  return file.text();
}

void printSilence(scrivo::Printer& printer, const sources::Notes::Silence& silence) {
  scrivo::StringAttrInfo agent(printer, "agent"), currentAt(printer, "currentAt");
  scrivo::Uint64AttrInfo age(printer, "age");
  agent.setValue(silence.agent);
  currentAt.setValue(silence.currentAt);
  age.setValue(static_cast<std::uint64_t>(std::max<std::int64_t>(silence.age, 0)));
  printer.addAttributes("", 3, agent.getArg(), currentAt.getArg(), age.getArg());
}

} // namespace

std::vector<std::string> linesOf(const sources::Notes& notes, const std::string& source) {
  std::vector<std::string> lines;
  if (!notes.moved.empty()) {
    lines.push_back(source + ": moved while it was read: " + joined(notes.moved) +
                    "; some entries may be missing or outdated");
  }
  if (notes.silence) {
    lines.push_back(source + ": its agent is " + notes.silence->agent + "; the state is that of " +
                    notes.silence->currentAt + ", " + std::to_string(notes.silence->age) +
                    " s ago");
  }
  if (notes.hiddenRoutes == 1) lines.push_back("1 route of other metrics or TOS is not shown");
  if (notes.hiddenRoutes > 1) {
    lines.push_back(std::to_string(notes.hiddenRoutes) +
                    " routes of other metrics or TOS are not shown");
  }
  return lines;
}

void printNotes(scrivo::Printer& printer, const sources::Notes& notes) {
  if (notes.empty()) return;
  scrivo::StringAttrInfo name(printer, "");
  scrivo::UintAttrInfo hidden(printer, "hiddenRoutes");
  printer.startSubmodel("state");
  if (!notes.moved.empty()) {
    printer.startList("moved");
    for (const auto& table : notes.moved) {
      name.setValue(table);
      printer.addAttributes("", 1, name.getArg());
    }
    printer.endList();
  }
  if (notes.silence) printSilence(printer, *notes.silence);
  if (notes.hiddenRoutes != 0) {
    hidden.setValue(static_cast<std::uint32_t>(notes.hiddenRoutes));
    printer.addAttributes("", 1, hidden.getArg());
  }
  printer.endSubmodel();
}

void renderWithNotes(const sources::Notes& notes, int fd, unsigned format,
                     const std::function<void(int fd)>& render) {
  if (format == scrivo::textFormat || notes.empty()) return render(fd);
  const MemoryFile document;
  render(document.descriptor());
  const auto first = membersOf([&](scrivo::Printer& printer) { printNotes(printer, notes); });
  scrivo::Printer out(fd, scrivo::textFormat);
  const auto rest = document.text().substr(1);
  out.addFrills("{%s,%s", scrivo::verbatim(first), scrivo::verbatim(rest));
  out.close();
}

} // namespace command
