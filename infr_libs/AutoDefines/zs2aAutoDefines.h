#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"

// The definitions of the zs2a architecture.
class zs2aAutoDefines : public AutoDefines {
public:
    explicit zs2aAutoDefines(unsigned arch);
    ~zs2aAutoDefines() override;
};
