/// @file
/// Gamma spectra in the .spe text format of sections that begin with "$". Values only; any thread.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

namespace tarnis {

/// Writes the sections that decodeSpe() reads. Supports a single curve of non-negative values over channel numbers;
/// returns an empty text for anything else.
TARNIS_EXPORT QByteArray encodeSpe(const Dataset& data);

/// Reads $DATA (first and last channel, then as many counts), and where they exist $SPEC_ID (title), $DATE_MEA (time,
/// which has no time zone and is read as UTC), $MEAS_TIM (live and real time), $MCA_CAL or else $ENER_FIT (calibration,
/// in keV unless the section names a unit). The x axis counts channels; other sections are ignored.
TARNIS_EXPORT DatasetResult decodeSpe(QByteArrayView text);

} // namespace tarnis
