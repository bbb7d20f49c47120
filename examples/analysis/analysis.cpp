// Reads a spectrum, finds its peaks and prints them with errors. No widgets, no event loop.
#include <tarnis/analysis/figures.h>
#include <tarnis/analysis/peaktable.h>
#include <tarnis/formats/formats.h>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: analysis FILE.(csv|spe|npy)\n");
        return 2;
    }
    const tarnis::DatasetResult file = tarnis::readDataset(QString::fromLocal8Bit(argv[1]));
    if (!file.error.isEmpty()) {
        std::fprintf(stderr, "analysis: cannot read '%s': %s\n", argv[1], qPrintable(file.error));
        return 1;
    }
    tarnis::BinnedData spectrum;
    spectrum.contents = file.data.values;
    const tarnis::PeakTable table = tarnis::analysePeaks(spectrum);
    if (!table.fault.isEmpty()) {
        std::fprintf(stderr, "analysis: %s\n", qPrintable(table.fault));
        return 1;
    }
    std::printf("%-14s %-14s %-12s %s\n", "channel", "area", "FWHM", "acceptable");
    for (const tarnis::TablePeak& peak : table.peaks)
        std::printf("%-14s %-14s %-12s %s\n", qPrintable(tarnis::figureText(peak.centre, peak.centreError)),
            qPrintable(tarnis::figureText(peak.area, peak.areaError)),
            qPrintable(tarnis::figureText(peak.fwhm, peak.fwhmError)), peak.acceptable ? "yes" : "no");
    return 0;
}
