// The container's costs, each beside what it is measured against in the same run:
//   - the CRC beside its definition bit by bit, and beside the system's own `cksum`;
//   - loading beside `memcpy` and the CRC;
//   - appending, which must cost the same for each sector however many there are.
// usage: ZBHandlerBenchmark [MEGABYTES]    (of the container that is loaded; 256)

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "benchmarks/support/ProcessorTime.h"
#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "tests/support/BitSerialCrc.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace {

volatile std::uint64_t s_sink; // results go here, so that none is optimised away

std::string randomBytes(std::size_t numBytes) {
    std::mt19937_64 random(7);
    std::string bytes(numBytes, '\0');
    for (std::size_t i = 0; i + 8 <= numBytes; i += 8) {
        const std::uint64_t value = random();
        std::memcpy(&bytes[i], &value, sizeof value);
    }
    return bytes;
}

void printRow(const char* what, std::size_t numBytes, double seconds, double ratio, const char* against) {
    std::printf("%-28s %9.3f ms %9.0f MB/s %8.2f times %s\n", what, seconds * 1e3,
                static_cast<double>(numBytes) / seconds / 1e6, ratio, against);
}

void compareCrc(const std::string& bytes) {
    const TemporaryFolder folder;
    const std::string command = "cksum " + folder.write("bytes", bytes) + " > " + folder.file("sum");
    const double start = leastProcessorSeconds(
        [] { s_sink = static_cast<std::uint64_t>(std::system("cksum /dev/null > /dev/null")); });
    const double cksum =
        leastProcessorSeconds([&] { s_sink = static_cast<std::uint64_t>(std::system(command.c_str())); }) -
        start;
    const double serial = leastProcessorSeconds([&] { s_sink = bitSerialCrc(bytes); });
    const double fast = leastProcessorSeconds([&] { s_sink = computeZBCrc(bytes.data(), bytes.size()); });
    printRow("CRC bit by bit", bytes.size(), serial, 1, "its definition");
    printRow("CRC of the library", bytes.size(), fast, serial / fast, "as fast as the definition");
    printRow("cksum, its start taken off", bytes.size(), cksum, serial / cksum, "as fast as the definition");
}

void compareLoading(const std::string& payload) {
    ZBHandler* built = createZBHandler();
    constexpr std::size_t numSectors = 16;
    const std::size_t share = payload.size() / numSectors;
    for (std::size_t i = 0; i < numSectors; ++i)
        addZBSector(built, ZBSEC_ZN, share, payload.data() + i * share);
    std::string file(static_cast<std::size_t>(getZBFileSize(built)), '\0');
    const double writing = leastProcessorSeconds([&] {
        s_sink = static_cast<std::uint64_t>(
            writeZBToMemory(built, file.data(), static_cast<std::int32_t>(file.size())));
    });
    deleteZBHandler(built);

    // Into memory at hand: loading must make its own.
    std::string copy(file.size(), '\0');
    const double copying = leastProcessorSeconds([&] {
        std::memcpy(copy.data(), file.data(), file.size());
        s_sink = static_cast<unsigned char>(copy.back());
    });
    const double crc = leastProcessorSeconds([&] {
        for (std::size_t i = 0; i < numSectors; ++i)
            s_sink = computeZBCrc(file.data() + i * share, share);
    });
    const double loading = leastProcessorSeconds([&] {
        ZBHandler* handle = loadZBFromMemory(file.data(), file.size());
        s_sink = static_cast<std::uint64_t>(handle->errorCode);
        deleteZBHandler(handle);
    });
    printRow("memcpy", file.size(), copying, 1, "memcpy");
    printRow("CRC", file.size(), crc, crc / copying, "the time of memcpy");
    printRow("load", file.size(), loading, loading / (3 * copying + crc),
             "the time of three memcpy and the CRC (must be below 1)");
    printRow("write", file.size(), writing, writing / (3 * copying + crc),
             "the time of three memcpy and the CRC");
}

void compareAppending() {
    double perSectorOfFirst = 0;
    for (std::size_t numSectors = 12500; numSectors <= 400000; numSectors *= 2) {
        const double seconds = leastProcessorSeconds([&] {
            ZBHandler* handle = createZBHandler();
            for (std::size_t i = 0; i < numSectors; ++i)
                addZBSector(handle, ZBSEC_ZN, 8, "payload");
            s_sink = getZBFileSize(handle);
            deleteZBHandler(handle);
        });
        const double perSector = seconds / static_cast<double>(numSectors);
        if (perSectorOfFirst == 0)
            perSectorOfFirst = perSector;
        std::printf("append %7zu sectors       %9.3f ms %9.1f ns each %7.2f times the first row's\n",
                    numSectors, seconds * 1e3, perSector * 1e9, perSector / perSectorOfFirst);
    }
}

} // namespace

int main(int argc, char** argv) {
    const long megabytes = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 256;
    if (megabytes < 1 || megabytes > 1024)
        return 2;
    compareCrc(randomBytes(32 << 20));
    std::printf("\n");
    compareLoading(randomBytes(static_cast<std::size_t>(megabytes) << 20));
    std::printf("\n");
    compareAppending();
    return 0;
}
