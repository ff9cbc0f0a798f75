// The part of a Gating-ML document that describes scales and matrices.
#pragma once

#include "files/xml_document.h"
#include "gating/gating_strategy.h"

namespace Host {

/// Read a `transformation` or a `spectrumMatrix` into `strategy`. Throw Refusal.
void ReadTransformation(const XmlElement& element, Strategy& strategy);
void ReadSpectrumMatrix(const XmlElement& element, Strategy& strategy);

/// The name in an `fcs-dimension`.
std::string ReadParameterName(const XmlElement& fcsDimension);

}  // namespace Host
