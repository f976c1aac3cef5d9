#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"

// The definitions of the zs1b architecture.
class zs1bAutoDefines : public AutoDefines {
public:
    explicit zs1bAutoDefines(unsigned arch);
    ~zs1bAutoDefines() override;
};
