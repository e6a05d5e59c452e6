#include "common/forms/screen_reader.h"

#include "common/Counted.h"
#include "common/com.h"

namespace forms {
namespace {

// Only a machine that has a screen reader asks, and the library comes with that.
class Library {
 public:
  Library() noexcept : module_(LoadLibraryW(L"oleacc.dll")) {
    find(create_, "CreateStdAccessibleObject");
    find(answer_, "LresultFromObject");
  }

  ComPtr<IAccessible> standardObject(HWND window) const noexcept {
    ComPtr<IAccessible> object;
    if (create_ && answer_)
      create_(window, OBJID_CLIENT, __uuidof(IAccessible), reinterpret_cast<void**>(object.put()));
    return object;
  }
  LRESULT answer(WPARAM wParam, IUnknown* object) const noexcept {
    return answer_(__uuidof(IAccessible), wParam, object);
  }

 private:
  template <class Function>
  void find(Function*& function, const char* name) const noexcept {
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  HMODULE module_;  // stays loaded: objects of it may outlive the window
  decltype(CreateStdAccessibleObject)* create_ = nullptr;
  decltype(LresultFromObject)* answer_ = nullptr;
};

// The system's object for a window in all but the role.
class AccessibleWindow final : public com::Counted<IAccessible> {
 public:
  AccessibleWindow(ComPtr<IAccessible> standard, long role) noexcept
      : standard_(std::move(standard)), role_(role) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != __uuidof(IAccessible))
      return E_NOINTERFACE;
    *object = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    if (child.vt != VT_I4 || child.lVal != CHILDID_SELF) return standard_->get_accRole(child, role);
    role->vt = VT_I4;
    role->lVal = role_;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    return standard_->get_accParent(parent);
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override {
    return standard_->get_accChildCount(count);
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    return standard_->get_accChild(child, object);
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* text) override {
    return standard_->get_accName(child, text);
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    return standard_->get_accState(child, state);
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
    return standard_->get_accFocus(child);
  }
  HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override {
    return standard_->accSelect(flags, child);
  }
  HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height,
                                        VARIANT child) override {
    return standard_->accLocation(left, top, width, height, child);
  }
  HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override {
    return standard_->accNavigate(direction, start, end);
  }
  HRESULT STDMETHODCALLTYPE accHitTest(long left, long top, VARIANT* child) override {
    return standard_->accHitTest(left, top, child);
  }

  // What no such window has.
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, long*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT*) override { return none; }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR*) override { return none; }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return none; }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return none; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return none; }

  // Scripts are no screen readers: those go by the interface's table.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

 private:
  static constexpr HRESULT none = DISP_E_MEMBERNOTFOUND;

  ComPtr<IAccessible> standard_;
  long role_;
};

}  // namespace

LRESULT tellScreenReader(HWND window, WPARAM wParam, LPARAM lParam, long role) noexcept try {
  if (static_cast<LONG>(lParam) != OBJID_CLIENT) return 0;
  static const Library library;
  auto standard = library.standardObject(window);
  if (!standard) return 0;
  const auto object = ComPtr<IAccessible>::adopt(new AccessibleWindow(std::move(standard), role));
  return library.answer(wParam, object.get());
} catch (...) {  // Not run by tests: no memory.
  return 0;
}

}  // namespace forms
