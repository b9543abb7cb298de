#pragma once

#include <string>
#include <vector>

#include "platform/com/ComPtr.h"

// What every member of the driver raises when it fails, written down once for tests through the function table, through
// Invoke and by script.

/// What a call left behind as error information; empty texts when there is none.
struct Failure {
    unsigned result = 0;
    std::string source, description;
    bool operator==(const Failure&) const = default;
};

/// The interfaces of a driver.
enum Face { DriverFace, IdentifyFace, SetupFace, Faces };

/// One entry of an interface's function table.
struct Slot {
    struct Parameter {
        VARTYPE type;    ///< VT_I4 for enumerations, VT_DISPATCH for any object
        bool reference;  ///< a pointer to the value
        bool result;     ///< the member's value
        LONG value;      ///< a valid argument, if the member needs no other
    };

    Face face;
    std::string name;
    INVOKEKIND kind;
    unsigned offset;  ///< in the function table, bytes
    std::vector<Parameter> parameters;

    /// The member as "get Name", "put Name" or "call Name".
    std::string Text() const;
};

/// Every slot of the driver's interfaces, read from the type library of that driver component.
std::vector<Slot> SlotsOf(const std::wstring& component);

/// The one with that text.
const Slot& Find(const std::vector<Slot>& slots, const std::string& member);

/// Makes the calls of a walk, or writes them down.
class Walker {
  public:
    virtual ~Walker() = default;
    /// From now on a new driver, off-line, with a simulated receiver at the other end of its link.
    virtual void Begin(const std::string& state) = 0;
    /// A call that ends so.
    virtual void Call(const Slot& slot, const Failure& expected) = 0;
};

/// Calls every member off-line, where all fail but those that never do; on-line in the state that the member needs,
/// where all succeed; and in a state that suits none of those that need one.
void Walk(const std::vector<Slot>& slots, Walker& walker);

/// A member that reads another one first, which fails in its place off-line, and what it raises itself when the link
/// goes wrong behind that and the instrument's error queue is empty.
struct Behind {
    Slot slot;
    int mode, port;    ///< a measure mode and an input port that suit it
    std::string line;  ///< the last one that the receiver gets before the member's own
    Failure expected;
};
std::vector<Behind> BehindAnother(const std::vector<Slot>& slots);
