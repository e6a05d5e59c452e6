#include "host/model/Explorer.h"

#include <objbase.h>

namespace standin {
namespace {

constexpr CLSID explorerClass = {
    0x8C3B5B4E, 0x2D0F, 0x4A7C, {0xB1, 0x6E, 0x5F, 0x2A, 0x90, 0x47, 0xD3, 0x61}};
constexpr wchar_t explorerClassText[] = L"{8C3B5B4E-2D0F-4A7C-B16E-5F2A9047D361}";

const MemberTable explorerMembers(
    L"Explorer", {{L"vtiBringToTop", Kind::method, {}, call<&Explorer::bringToTop>}});

class ExplorerFactory final : public IClassFactory {
 public:
  explicit ExplorerFactory(SharedSession session) : session_(std::move(session)) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return static_cast<ULONG>(++references_); }
  STDMETHOD_(ULONG, Release)() override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  STDMETHOD(CreateInstance)(IUnknown* outer, REFIID iid, void** object) override {
    if (outer) return CLASS_E_NOAGGREGATION;
    return make<Explorer>(session_)->QueryInterface(iid, object);
  }
  STDMETHOD(LockServer)(BOOL) override { return S_OK; }

 private:
  ~ExplorerFactory() = default;

  SharedSession session_;
  long references_ = 0;
};

}  // namespace

com::Variant Explorer::bringToTop(const Arguments&) {
  session()->activated();
  return {};
}

const MemberTable& Explorer::members() const { return explorerMembers; }

ExplorerRegistration::ExplorerRegistration(const SharedSession& session)
    : progId_(L"FrontPage.Explorer." + session->options.version) {
  RegSetValueW(HKEY_CLASSES_ROOT, (progId_ + L"\\CLSID").c_str(), REG_SZ, explorerClassText, 0);
  const ComPtr<ExplorerFactory> factory(new ExplorerFactory(session));
  CoRegisterClassObject(explorerClass, factory.get(), CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                        &cookie_);
}

ExplorerRegistration::~ExplorerRegistration() {
  if (cookie_ != 0) CoRevokeClassObject(cookie_);
  for (const auto& key : {progId_ + L"\\CLSID", progId_})
    RegDeleteKeyW(HKEY_CLASSES_ROOT, key.c_str());
}

}  // namespace standin
