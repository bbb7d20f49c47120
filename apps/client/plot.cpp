#include "plot.h"

#include "commands.h"

namespace cli {

const Command plotCommand {
    .name = "plot",
    .synopsis = "FILE|NAME... -o FILE.(png|pdf|svg) [--size WxH] [--dpi N] [--range X0:X1] [--yrange Y0:Y1] [--log]\n"
                "                   [--map NAME] [--levels P0:P1] [--title T] [--theme NAME] [--residuals] [server options]",
    .summary = "draws a figure of files and of histograms of the server",
    .description = "Draws spectra, or one map, into a figure. FILE is CSV (one column of counts, or x and counts; # begins a comment),\n"
                   ".npy, .h5 or .spe. Any other word is the NAME of a histogram of the server. Several spectra are drawn\n"
                   "into one plot with a legend, each over its own x axis. The file - is standard input.",
    .options = serverOptions()
        + QList<Option> {
            { "o", "FILE", "the figure: its name ends in .png, .pdf or .svg; - is standard output" },
            { "format", "FORMAT", "png, pdf or svg, whatever the name of the file; without it png for -o -" },
            { "size", "WxH", "width and height in pixels of 1/96 inch; without it 800x500" },
            { "dpi", "N", "pixels per inch of a PNG file, 24 to 1200; without it 96" },
            { "range", "X0:X1", "range of x" },
            { "yrange", "Y0:Y1", "range of y" },
            { "log", {}, "logarithmic counts: the y axis of spectra, the colours of a map" },
            { "map", "NAME", "colours of a map: viridis, cividis, magma, inferno, turbo, greys, diverging, rainbow or hot" },
            { "levels", "P0:P1", "lower and upper end of the colours, in percent of the non-empty bins of a map" },
            { "title", "T", "title; without it the name of the file or histogram" },
            { "theme", "NAME", "print, light, dark, high-contrast or classic; without it print" },
            { "residuals", {}, "what the first curve of a file differs from the second one, a model of it, below the plot" },
        },
    .minWords = 1,
    .maxWords = -1,
    .run = plot,
};

} // namespace cli
