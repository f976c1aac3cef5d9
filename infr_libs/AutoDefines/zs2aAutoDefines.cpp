#include "infr_libs/AutoDefines/zs2aAutoDefines.h"

#include "infr_libs/AutoDefines/DeviceConstants.h"

zs2aAutoDefines::zs2aAutoDefines(unsigned arch) : AutoDefines(arch) {
#define ZELM_FIELD_VALUE(name, mask1b, shift1b, mask1c, shift1c, mask, shift) m_##name = {mask, shift};
    ZELM_REGISTER_FIELDS(ZELM_FIELD_VALUE)
#define ZELM_CONSTANT_VALUE(member, zs1b, zs1c, zs2a) member = zs2a;
    ZELM_DEVICE_CONSTANTS(ZELM_CONSTANT_VALUE)
}

zs2aAutoDefines::~zs2aAutoDefines() = default;
