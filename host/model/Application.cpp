#include "host/model/Application.h"

#include "common/Dispatch.h"
#include "common/errors.h"
#include "host/model/Themes.h"
#include "host/model/Web.h"
#include "host/model/web_paths.h"

namespace standin {
namespace {

const MemberTable windowMembers(L"WebWindow",
                                {{L"Caption", Kind::get, {}, call<&WebWindow::getCaption>},
                                 {L"Activate", Kind::method, {}, call<&WebWindow::activate>}});

const MemberTable applicationMembers(
    L"Application", {{L"Name", Kind::get, {}, call<&Application::getName>},
                     {L"Version", Kind::get, {}, call<&Application::getVersion>},
                     {L"CommandBars", Kind::get, {}, call<&Application::getCommandBars>},
                     {L"ActiveWeb", Kind::get, {}, call<&Application::getActiveWeb>},
                     {L"ActiveWebWindow", Kind::get, {}, call<&Application::getActiveWebWindow>},
                     {L"Themes", Kind::get, {}, call<&Application::getThemes>},
                     {L"MakeAbs",
                      Kind::method,
                      {{L"UrlBase", Takes::textOrObject}, {L"Url", Takes::text}},
                      call<&Application::makeAbs>}});

// By its name: the object may be somebody else's.
std::wstring addressOf(const ComPtr<IDispatch>& object) {
  try {
    return com::Dispatch(object).value(L"Url").text();
  } catch (const Error&) {
    throw Refusal{E_INVALIDARG, L"The object has no address."};
  }
}

}  // namespace

const MemberTable& WebWindow::members() const { return windowMembers; }

std::wstring windowCaption(const Session& session) {
  std::wstring caption = L"Microsoft FrontPage";
  if (!session.webFolder.empty()) caption += L" - " + session.webFolder;
  return caption;
}

com::Variant WebWindow::getCaption(const Arguments&) { return windowCaption(*session()); }

com::Variant WebWindow::activate(const Arguments&) {
  session()->activated();
  return {};
}

Application::Application(SharedSession session)
    : AutomationObject(std::move(session)), bars_(make<CommandBars>(this->session())) {}

const MemberTable& Application::members() const { return applicationMembers; }

com::Variant Application::getName(const Arguments&) { return L"Microsoft FrontPage"; }
com::Variant Application::getVersion(const Arguments&) { return session()->options.version; }
com::Variant Application::getCommandBars(const Arguments&) { return objectValue(bars_); }

com::Variant Application::getActiveWeb(const Arguments&) {
  if (!session()->webFolder.empty()) return objectValue(make<Web>(session()));
  if (session()->options.noWebIsError) throw Refusal{E_FAIL, L"No web is open."};
  return session()->nothing();
}

com::Variant Application::getActiveWebWindow(const Arguments&) {
  return objectValue(make<WebWindow>(session()));
}

com::Variant Application::getThemes(const Arguments&) {
  return objectValue(make<Themes>(session()));
}

com::Variant Application::makeAbs(const Arguments& arguments) {
  const std::wstring url = arguments.text(1);
  if (isAbsoluteUrl(url)) return url;
  const std::wstring base =
      arguments.isText(0) ? arguments.text(0) : addressOf(arguments.object(0));
  return absoluteUrl(*session(), base, url);
}

}  // namespace standin
