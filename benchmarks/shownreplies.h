// Replies shown by a live window.
#pragma once

#include "measure.h"

#include <tarnis/server/tarniscmd.h>

#include <QByteArray>
#include <QString>

#include <vector>

/// Passes a reply to a live window repeatedly. The counters are medians in milliseconds: storing the reply, drawing it,
/// both, and one copy of its bytes.
template <typename Window, typename Plot>
void showReplies(
    benchmark::State& state, Window& window, Plot& plot, const PTarnisCmd& command, const QByteArray& payload)
{
    std::vector<double> taken;
    std::vector<double> drawn;
    std::vector<double> whole;
    std::vector<double> copied;
    for (auto unused : state) {
        taken.push_back(millisecondsOf([&] { window.result(command, payload); }));
        drawn.push_back(millisecondsOf([&] { plot.repaint(); }));
        whole.push_back(taken.back() + drawn.back());
        copied.push_back(millisecondsOf([&] {
            QByteArray copy = payload;
            copy.detach();
            benchmark::DoNotOptimize(copy.constData());
        }));
        state.SetIterationTime(whole.back() / 1000.0);
    }
    state.counters["take_ms"] = median(taken);
    state.counters["draw_ms"] = median(drawn);
    state.counters["gui_ms"] = median(whole);
    state.counters["copy_ms"] = median(copied);
}

/// A command with a binary reply that ends with this text.
inline PTarnisCmd binaryReply(const QString& text)
{
    PTarnisCmd command(new TarnisCmd("hist"));
    command->m_bBinary = true;
    command->m_replyText = text;
    return command;
}
