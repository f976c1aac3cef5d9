#include "infr_libs/ElfHandler/ElfGroupList.h"

ElfGroupList::~ElfGroupList() = default;

void ElfGroupList::postProcess(const ElfHandler* handler) {
    for (const std::unique_ptr<ElfGroup>& group : m_groups)
        group->postProcess(handler);
}
