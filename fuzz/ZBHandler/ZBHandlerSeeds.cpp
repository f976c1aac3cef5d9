// Writes the seeds of the fuzz target: containers with every type of sector, each also with waived CRCs, so
// that a change to a payload gets through.

#include "tests/support/FuzzSeeds.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/SegmentFile.h"

#include <string>

namespace {

const std::string s_program =
    segmentFile(0x10004, {bytesAt(0x10000, "first"), bytesAt(0x10007, "second")}).bytes;

// One sector with a payload of whole words and no CRC to mend.
std::string waived(unsigned type, const std::string& payload) {
    ImageBuilder image;
    image.sector(type, payload);
    return image.setNumber(image.size() - 4, 4, 0).bytes();
}

const std::string s_seeds[] = {
    ImageBuilder().bytes(),
    ImageBuilder().zn("<Network/>").bytes(),
    ImageBuilder().config("<ZSystem/>").zn("<Network/>").elf(0, 1, s_program).end().bytes(),
    ImageBuilder().elf(0, 1, s_program).jump(0, 1).call(0, 1).nodeDescriptor(1, 2).bytes(),
    ImageBuilder().binary(1, 2, 3, "four").sector(10, s_program).sector(11, "short").bytes(),
    ImageBuilder().end().end().sector(9, "x").sector(0, "").bytes(),
    ImageBuilder().zn("A").cutTo(30).bytes(),
    ImageBuilder().zn("A").flipBit(24, 0).zn("B").bytes(),
    waived(8, "ABCD"),
    waived(2, std::string(12, '\0') + s_program),
    waived(4, std::string(12, '\1')),
};

} // namespace

int main(int argc, char** argv) {
    return writeSeeds(argc, argv, s_seeds);
}
