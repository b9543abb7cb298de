#include "platform/com/Server.h"
#include "tests/com/Client.h"

std::wstring Component::File(const std::wstring& name) {
    const std::wstring program = com::FileName(nullptr);
    return program.substr(0, program.rfind(L'\\') + 1) + name + L".dll";
}

namespace {

/// The thread's apartment, as hosts have it, and the components beside this program in the registry.
class Surroundings : public testing::Environment {
  public:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        for (const auto name : {L"Seamcfg", L"Seamlib", L"Conduit", L"XTarn4x"}) {
            // Those of another build folder may be registered.
            ASSERT_HRESULT_SUCCEEDED(Component(Component::File(name)).Install(TRUE, L"force"));
            ASSERT_EQ(GetModuleHandleW(name), nullptr) << "registering has created no object";
        }
    }
    void TearDown() override { CoUninitialize(); }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::AddGlobalTestEnvironment(new Surroundings);
    return RUN_ALL_TESTS();
}
