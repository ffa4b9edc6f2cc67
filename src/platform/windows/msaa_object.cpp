#include "platform/windows/msaa_object.h"

#include <algorithm>

#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

using Microsoft::WRL::ComPtr;

constexpr long kEmbeds = 0x1009;  // Firefox's own relation

VARIANT number(long value) {
  VARIANT variant;
  ::VariantInit(&variant);
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}

std::optional<std::string> taken(HRESULT result, BSTR text) {
  std::optional<std::string> utf8;
  if (result == S_OK) utf8 = text ? utf8FromWide({text, ::SysStringLen(text)}) : std::string();
  ::SysFreeString(text);
  return utf8;
}

long numberOf(HRESULT result, VARIANT& variant) {
  const long value = result == S_OK && variant.vt == VT_I4 ? variant.lVal : 0;
  ::VariantClear(&variant);
  return value;
}

}  // namespace

MsaaObject::MsaaObject(IDispatch* object) {
  // Not IID_IAccessible, which mingw-w64 resolves to an import.
  if (object == nullptr || FAILED(object->QueryInterface(__uuidof(IAccessible), &object_))) return;
  object_.As(&identity_);
}

// AccessibleObjectFromWindow would wait without a limit, and hand out an object of its own
// if the window has none.
MsaaObject MsaaObject::ofWindow(HWND window, std::chrono::milliseconds patience) {
  DWORD_PTR answer = 0;
  const auto id = static_cast<LPARAM>(static_cast<DWORD>(OBJID_CLIENT));
  if (!::SendMessageTimeoutW(window, WM_GETOBJECT, 0, id, SMTO_ABORTIFHUNG | SMTO_ERRORONEXIT,
                             static_cast<UINT>(patience.count()), &answer) ||
      answer == 0 || FAILED(static_cast<HRESULT>(answer))) {
    return {};
  }
  ComPtr<IAccessible> object;
  if (FAILED(
          ::ObjectFromLresult(static_cast<LRESULT>(answer), __uuidof(IAccessible), 0, &object))) {
    return {};
  }
  return MsaaObject(object.Get());
}

std::optional<std::string> MsaaObject::name() const {
  BSTR text = nullptr;
  const HRESULT result = object_->get_accName(number(CHILDID_SELF), &text);
  return taken(result, text);
}

std::optional<std::string> MsaaObject::value() const {
  BSTR text = nullptr;
  const HRESULT result = object_->get_accValue(number(CHILDID_SELF), &text);
  return taken(result, text);
}

long MsaaObject::role() const {
  VARIANT role = number(0);
  const HRESULT result = object_->get_accRole(number(CHILDID_SELF), &role);
  return numberOf(result, role);
}

long MsaaObject::state() const {
  VARIANT state = number(0);
  const HRESULT result = object_->get_accState(number(CHILDID_SELF), &state);
  return numberOf(result, state);
}

MsaaObject MsaaObject::embedded() const {
  VARIANT document;
  ::VariantInit(&document);
  const HRESULT result = object_->accNavigate(kEmbeds, number(CHILDID_SELF), &document);
  MsaaObject found;
  if (result == S_OK && document.vt == VT_DISPATCH) found = MsaaObject(document.pdispVal);
  ::VariantClear(&document);
  return found;
}

long MsaaObject::childCount() const {
  long count = 0;
  return object_->get_accChildCount(&count) == S_OK ? count : 0;
}

std::vector<MsaaObject> MsaaObject::children(long most) const {
  std::vector<MsaaObject> found;
  const long count = std::min(childCount(), most);
  for (long i = 1; i <= count; ++i) {
    ComPtr<IDispatch> child;
    if (object_->get_accChild(number(i), &child) != S_OK) continue;
    MsaaObject object(child.Get());
    if (object) found.push_back(std::move(object));
  }
  return found;
}

bool MsaaObject::isSameAs(const MsaaObject& other) const {
  return identity_.Get() == other.identity_.Get();
}

}  // namespace quorrix
