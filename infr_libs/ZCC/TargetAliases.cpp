#include "infr_libs/ZCC/TargetAliases.h"

const TargetAliases targetAliases;

TargetAliases::TargetAliases()
    : m_aliases{
          // asked for, looked up instead
          {"ZS1-G4A-FB144", "ZS1-G04B-FB144-C4"}, //
          {"ZS1-G4A-FB512", "ZS1-G04B-FB512-C4"}, //
          {"ZS1-G4B-FB144", "ZS1-G04B-FB144-C4"}, //
          {"ZS1-G4B-FB512", "ZS1-G04B-FB512-C4"}, //
          {"ZS1-L1A-LQ64", "ZS1-L01A-LQ64-C4"},   //
          {"ZS1-L1A-TQ128", "ZS1-L01A-TQ128-C4"}, //
          {"ZS1-L2A-QF124", "ZS1-L02A-QF124-C4"}, //
      } {}

const char* TargetAliases::lookup(const std::string& name) const {
    const auto found = m_aliases.find(name);
    return found == m_aliases.end() ? nullptr : found->second;
}
