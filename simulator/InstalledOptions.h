#pragma once

#include <set>
#include <string>
#include <string_view>

namespace sim {

/// The hardware options of the instrument, by order code.
class InstalledOptions {
  public:
    /// From a list such as "TARN-B1,TARN-B3". Throws std::invalid_argument that names an unknown code.
    explicit InstalledOptions(std::string_view list);

    bool Has(std::string_view code) const { return codes_.contains(code); }
    /// What READ:INFO:DATA? answers: one bit for each code that has one.
    unsigned long Mask() const;
    /// What SYSTem:SERVice:GET:BOARd:INFO? answers: "type name fields;..." with the SAW filters on board 0x83.
    std::string Boards() const;
    /// Whether the SAW filter of so many MHz is fitted.
    bool HasSaw(int bandwidth) const;
    /// All codes, separated by commas.
    std::string List() const;

  private:
    std::set<std::string, std::less<>> codes_;
};

}  // namespace sim
