#include "tools/zetool/wave/StandardConversion.h"

#include "tools/zetool/wave/StandardDeclarations.h"

namespace {

TimeScale scaleOf(const VcdHeader& header, StandardReader reader) {
    const TimeScale scale = TimeScale::of(header.timescale, header.isOfPlugin());
    return reader == StandardReader::Sampler ? scale.coarse() : scale;
}

} // namespace

StandardConversion::StandardConversion(OpenWave& wave, StandardReader reader)
    : m_wave(wave),
      m_reader(reader),
      m_signals(wave.signals,
                reader == StandardReader::Sampler ? StandardChoice::OneBit : StandardChoice::All),
      m_names(wave.header, wave.signals, m_signals.isKept(),
              reader == StandardReader::Sampler ? StandardNames::Leaf::Whole : StandardNames::Leaf::InScope),
      m_scale(scaleOf(wave.header, reader)) {}

void StandardConversion::write(OutputFile& output) {
    // A viewer that samples reads no structure document.
    const bool withStructure = m_reader == StandardReader::Viewer;
    output.write(
        standardDeclarations(m_wave.header, m_wave.signals, m_signals, m_names, m_scale, withStructure));
    m_body.emplace(m_wave.header, m_wave.source, m_signals, m_scale, output);
    m_wave.scan(*m_body);
}
