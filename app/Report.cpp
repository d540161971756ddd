// Statistics, state hashes and the memory report.
#include "Report.h"

#include <cinttypes>

#include "engine/core/Engine.h"
#include "engine/memory/Allocator.h"
#include "engine/net/SocketUDP.h"
#include "src/logic/Logic_Test_Fly.h"

StatsPrinter::StatsPrinter(const Logic_Test_Fly* logic) : m_logic(logic), m_start(Clock::now()) {}

void StatsPrinter::frame(double frame_seconds) {
    ++m_frames;
    m_spent += frame_seconds;
    const Clock::time_point now = Clock::now();
    const double elapsed = std::chrono::duration<double>(now - m_start).count();
    if (elapsed < 1.0) return;

    std::printf("%.1f frames/s", m_frames / elapsed);
    if (m_logic) {
        const LinkCounts& link = m_logic->getLinkCounts();
        const NetStats& net = SocketUDP::getStats();
        std::printf(", %" PRIu64 " records in, %" PRIu64 " feedback out, %" PRIu64 " unsent, %" PRIu64
                    " refused, %" PRIu64 " dropped",
                    link.records - m_last.records, link.feedback - m_last.feedback, link.unsent - m_last.unsent,
                    net.refused - m_refused, net.dropped - m_dropped);
        const float* const heights = m_logic->getLastFeedback().fTerrainHeightLG;
        if (link.feedback > m_last.feedback) {
            std::printf(", heights %.2f %.2f %.2f m", static_cast<double>(heights[0]), static_cast<double>(heights[1]),
                        static_cast<double>(heights[2]));
        }
        m_last = link;
        m_refused = net.refused;
        m_dropped = net.dropped;
    }
    std::printf(", %.0f us a frame", m_spent / m_frames * 1e6);
    std::printf("\n");
    std::fflush(stdout);
    m_start = now;
    m_frames = 0;
    m_spent = 0.0;
}

bool HashWriter::open(const std::string& file, std::string& error) {
    m_name = file;
    m_file.reset(std::fopen(file.c_str(), "w"));
    if (!m_file) error = "\"" + file + "\" cannot be written";
    return m_file != nullptr;
}

void HashWriter::frame(const Engine& engine) {
    if (m_file) std::fprintf(m_file.get(), "%d %016" PRIx64 "\n", engine.getFrame(), engine.getStateHash());
}

bool HashWriter::close(std::string& error) {
    if (!m_file) return true;
    const bool good = !std::ferror(m_file.get());
    if (std::fclose(m_file.release()) == 0 && good) return true;
    error = "\"" + m_name + "\" could not be written to its end";
    return false;
}

void printMemoryReport() {
    const jVector<MemInfo> infos = memGetInfos();
    std::printf("memory: %d blocks left\n", infos.size());
    for (const MemInfo& info : infos) {
        std::printf("  %zu bytes, %s:%d, %s\n", info.size, info.source.c_str(), info.line, info.function.c_str());
    }
}
