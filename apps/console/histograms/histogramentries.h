// The live windows, and the chooser of the server's histograms.
#pragma once

#include "windows/window.h"

namespace console {

WindowEntry rowsEntry();
WindowEntry pairsEntry();
WindowEntry singleRowEntry();
WindowEntry spectrumEntry();
WindowEntry mapEntry();
WindowEntry histogramsEntry();

} // namespace console
