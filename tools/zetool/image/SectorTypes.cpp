#include "tools/zetool/image/SectorTypes.h"

#include "tools/zetool/Words.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr SectorTypeRow s_types[] = {
    {ZBSEC_BINARY, "binary", "bin", SectorRecord::Place, true},
    {ZBSEC_ELF, "elf", "elf", SectorRecord::Place, true},
    {ZBSEC_SYSCONFIG, "config", "xml", SectorRecord::None, false},
    {ZBSEC_NODEDESC, "node", "bin", SectorRecord::Node, false},
    {ZBSEC_GOTO, "goto", "bin", SectorRecord::Place, false},
    {ZBSEC_CALL, "call", "bin", SectorRecord::Place, false},
    {ZBSEC_ZN, "network", "zn", SectorRecord::None, false},
    {ZBSEC_OTP, "otp", "bin", SectorRecord::Place, true},
    {ZBSEC_OTP_EXTENDED, "otp-extended", "bin", SectorRecord::Place, true},
    {ZBSEC_END, "end", "bin", SectorRecord::None, false},
};

template<typename Value, typename Member>
const SectorTypeRow* find(const Value& value, Member member) {
    const auto* const row = std::ranges::find(s_types, value, member);
    return row == std::end(s_types) ? nullptr : row;
}

} // namespace

const SectorTypeRow* findSectorType(std::int32_t type) {
    return find(type, &SectorTypeRow::type);
}

const SectorTypeRow* findSectorType(std::string_view name) {
    return find(name, &SectorTypeRow::name);
}

std::string sectorTypeText(std::int32_t type) {
    const SectorTypeRow* const row = findSectorType(type);
    return row ? row->name : "type " + std::to_string(type);
}

std::string crcText(std::uint32_t crc) {
    return hexText(crc, 2 * sizeof crc);
}
