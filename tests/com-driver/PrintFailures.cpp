#include <cstdio>

#include "platform/com/Server.h"
#include "tests/com-driver/Failures.h"

// Prints a script test (tests/wine) that calls every member of the driver as failing and succeeding members are
// expected to be called:
//
//   print-failures.exe > failures.vbs

namespace {

class Writer : public Walker {
  public:
    void Begin(const std::string& state) override {
        state_ = state;
        std::puts("Set driver = NewDriver()\nSet identify = host.Identify(driver)\nSet setup = host.Setup(driver)");
    }

    void Call(const Slot& slot, const Failure& expected) override {
        static const char* const objects[] = {"driver", "identify", "setup"};
        std::string arguments, value, result;
        for (const auto& parameter : slot.parameters) {
            if (parameter.result) {
                result = parameter.type == VT_DISPATCH ? "Set value = " : "value = ";
            } else if (slot.kind == INVOKE_PROPERTYPUT && &parameter == &slot.parameters.back()) {
                value = " = " + Literal(parameter);
            } else {
                arguments += (arguments.empty() ? "" : ", ") + Literal(parameter);
            }
        }
        const bool plain = slot.kind == INVOKE_FUNC && result.empty();
        if (!arguments.empty()) arguments = plain ? ' ' + arguments : '(' + arguments + ')';
        std::printf("%s%s.%s%s%s\n", result.c_str(), objects[slot.face], slot.name.c_str(), arguments.c_str(),
                    value.c_str());
        // Plain numbers arrive as such.
        const unsigned number = expected.result >> 16 == 0x800A ? expected.result & 0xFFFF : expected.result;
        std::printf("CheckError \"%s, %s\", &H%X, \"%s\", \"%s\"\n", slot.Text().c_str(), state_.c_str(), number,
                    expected.source.c_str(), expected.description.c_str());
        ++checks;
    }

    int checks = 0;

  private:
    static std::string Literal(const Slot::Parameter& parameter) {
        switch (parameter.type) {
            case VT_BSTR:
                return "\"Receiver\"";
            case VT_BOOL:
                return parameter.value == VARIANT_FALSE ? "False" : "True";
            case VT_ARRAY | VT_UI1:
                return "screen";
            default:
                return std::to_string(parameter.value);
        }
    }

    std::string state_;
};

}  // namespace

int main() {
    const std::wstring program = com::FileName(nullptr);
    std::puts("On Error Resume Next\nDim driver, identify, setup, value, screen");
    Writer writer;
    Walk(SlotsOf(program.substr(0, program.rfind(L'\\') + 1) + L"XTarn4x.dll"), writer);
    std::printf("Finish %d\n", writer.checks);
}
