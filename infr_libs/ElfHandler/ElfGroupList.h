#pragma once

#include "infr_libs/ElfHandler/ElfGroup.h"

#include <memory>
#include <vector>

class ElfHandler;

// The groups of a file, in file order. Kept by value in an `ElfHandler`.
class ElfGroupList {
public:
    ElfGroupList() = default;
    virtual ~ElfGroupList();

    ElfGroupList(const ElfGroupList&) = delete;
    ElfGroupList& operator=(const ElfGroupList&) = delete;

    void addGroup(std::unique_ptr<ElfGroup> group) { m_groups.push_back(std::move(group)); }

    // Finds the signature and members of every group; for the end of reading.
    void postProcess(const ElfHandler* handler);

    const std::vector<std::unique_ptr<ElfGroup>>& getGroups() const { return m_groups; }

private:
    std::vector<std::unique_ptr<ElfGroup>> m_groups;
};
