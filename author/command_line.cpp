#include "author/command_line.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"

namespace author {

const wchar_t usageText[] =
    L"usage: quillet-template COMMAND ...\n"
    L"\n"
    L"  check FOLDER...   tells what the template browser will list and show, and\n"
    L"                    what will be passed over in silence. A FOLDER is a\n"
    L"                    template's own, a theme's own, or one that holds such\n"
    L"  pack FOLDER -o FILE\n"
    L"                    checks a template or theme and makes an archive of it\n"
    L"  catalogue FOLDER... -o SITE --url ADDRESS\n"
    L"                    checks templates and makes a whole web site of them, to be\n"
    L"                    put at ADDRESS and shown in the online window\n"
    L"    --theme FOLDER  a theme, or a folder of themes, to go with them; may be\n"
    L"                    repeated\n"
    L"    --title TEXT    what the catalogue is called\n"
    L"    --pages FOLDER  pages of your own to make it with, see \"pages\"\n"
    L"  catalogue --check ADDRESS\n"
    L"                    reads a catalogue where it is published, and tells what\n"
    L"                    would fail in a download\n"
    L"  pages -o FOLDER   writes the pages that catalogues are made with, to be\n"
    L"                    changed\n"
    L"\n"
    L"  --anyway          packs and publishes in spite of findings\n"
    L"  --json            writes what there is to say as JSON\n"
    L"  --help, --version\n"
    L"\n"
    L"The exit code is 0 when all is well, 1 when there is a finding or the work\n"
    L"failed, 2 when the command was not understood.\n";

namespace {

using Command = Request::Command;

class Parser {
 public:
  explicit Parser(const std::vector<std::wstring>& arguments) : arguments_(arguments) {}

  Request parse() {
    while (at_ < arguments_.size() && request_.fault.empty() && !isDone_) take(arguments_[at_++]);
    if (request_.fault.empty() && !isDone_) complete();
    return std::move(request_);
  }

 private:
  void fail(const std::wstring& why) { request_.fault = why; }

  void finish(Command command) {
    request_.command = command;
    isDone_ = true;
  }

  void take(const std::wstring& word) {
    if (isPlain_) return takePlain(word);
    if (word == L"--") {
      isPlain_ = true;
    } else if (word == L"--help" || word == L"-h" || word == L"/?") {
      finish(Command::help);
    } else if (word == L"--version") {
      finish(Command::version);
    } else if (word == L"--json") {
      request_.json = true;
    } else if (word == L"--anyway") {
      allow(word, {L"pack", L"catalogue"});
      request_.anyway = true;
    } else if (word == L"-o" || word == L"--output") {
      allow(word, {L"pack", L"catalogue", L"pages"});
      takeValue(word, request_.output);
    } else if (word.size() > 1 && word.front() == L'-') {
      takeCatalogueOption(word);
    } else {
      takePlain(word);
    }
  }

  void takeCatalogueOption(const std::wstring& word) {
    const std::pair<const wchar_t*, std::wstring*> options[] = {
        {L"--url", &request_.address}, {L"--check", &published_}, {L"--pages", &request_.pages},
        {L"--title", &request_.title}, {L"--theme", nullptr},
    };
    for (const auto& [name, value] : options) {
      if (word != name) continue;
      allow(word, {L"catalogue"});
      if (value) return takeValue(word, *value);
      std::wstring theme;
      takeValue(word, theme);
      request_.themes.push_back(theme);
      return;
    }
    fail(L"There is no option " + word + L".");
  }

  void takeValue(const std::wstring& option, std::wstring& value) {
    if (!request_.fault.empty()) return;
    if (!value.empty()) return fail(L"The option " + option + L" is given twice.");
    if (at_ == arguments_.size() || arguments_[at_].empty())
      return fail(L"The option " + option + L" needs a value.");
    value = arguments_[at_++];
  }

  // The option belongs to these commands.
  void allow(const std::wstring& option, std::initializer_list<std::wstring_view> commands) {
    if (std::find(commands.begin(), commands.end(), name_) == commands.end())
      fail(L"The option " + option + L" does not belong to " +
           (name_.empty() ? L"the program; a command comes first."
                          : L"the command " + name_ + L"."));
  }

  void takePlain(const std::wstring& word) {
    if (!name_.empty()) {
      if (word.empty()) return fail(L"A folder's name is empty.");
      request_.folders.push_back(word);
      return;
    }
    constexpr std::pair<const wchar_t*, Command> commands[] = {
        {L"check", Command::check},
        {L"pack", Command::pack},
        {L"catalogue", Command::catalogue},
        {L"pages", Command::pages},
    };
    for (const auto& [name, command] : commands) {
      if (word != name) continue;
      name_ = word;
      request_.command = command;
      return;
    }
    fail(L"There is no command \"" + word + L"\".");
  }

  void complete() {
    if (name_.empty()) return fail(L"A command is missing.");
    if (request_.command == Command::catalogue && !published_.empty()) return completeCheck();
    const bool wantsFolders = request_.command != Command::pages;
    if (wantsFolders && request_.folders.empty()) return fail(L"A folder is missing.");
    if (!wantsFolders && !request_.folders.empty())
      return fail(L"The command " + name_ + L" takes no folder but that of the option -o.");
    if (request_.command == Command::pack && request_.folders.size() > 1)
      return fail(L"One folder is packed at a time.");
    if (request_.command != Command::check && request_.output.empty())
      return fail(L"The option -o is missing: where to write to.");
    if (request_.command == Command::catalogue && request_.address.empty())
      fail(L"The option --url is missing: the address that the catalogue will have.");
  }

  void completeCheck() {
    const bool onlyThat = request_.folders.empty() && request_.themes.empty() &&
                          request_.output.empty() && request_.address.empty() &&
                          request_.pages.empty() && request_.title.empty() && !request_.anyway;
    if (!onlyThat) return fail(L"Beside --check ADDRESS nothing else is given.");
    request_.command = Command::checkCatalogue;
    request_.address = published_;
  }

  const std::vector<std::wstring>& arguments_;
  std::size_t at_ = 0;
  Request request_;
  std::wstring name_;  // of the command
  std::wstring published_;
  bool isPlain_ = false;
  bool isDone_ = false;
};

}  // namespace

Request parseCommandLine(const std::vector<std::wstring>& arguments) {
  return Parser(arguments).parse();
}

}  // namespace author
