#include "com/RegisterFace.h"

#include "com/Members.h"
#include "platform/com/DualFace.h"

namespace com {
namespace {

/// What a host learns; the same for both interfaces.
struct Registration {
    std::string ClassName() const { return "clsTarn4x"; }
    std::string ClassDescription() const { return "Tarn4x"; }
};

class RegisterFace : public DualFace<&CLSID_clsRegister, _clsRegister, IRegister> {
  public:
    STDMETHODIMP IRegister_GetClassDescription(BSTR* value) override { return GetClassDescription(value); }
    STDMETHODIMP IRegister_GetClassName(BSTR* value) override { return GetClassName(value); }
    STDMETHODIMP GetClassDescription(BSTR* value) override { return Get(value, &Registration::ClassDescription); }
    STDMETHODIMP GetClassName(BSTR* value) override { return Get(value, &Registration::ClassName); }

  private:
    template <class Member>
    HRESULT Get(BSTR* value, Member member) {
        return GetMember(registration_, __uuidof(IRegister), value, member);
    }

    Registration registration_;
};

}  // namespace

HRESULT CreateRegister(REFIID iid, void** object) { return Create<RegisterFace>(iid, object); }

}  // namespace com
