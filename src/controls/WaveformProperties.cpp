#include "controls/WaveformProperties.h"

#include "controls/uWaveform.h"

namespace qm {

namespace {

template <auto Read, auto Write>
constexpr WaveformProperty Number(const char* name, std::int32_t defaultValue) {
  return {name, defaultValue, [](const uWaveform& control) { return std::int32_t{(control.*Read)()}; },
          [](uWaveform& control, std::int32_t value) { (control.*Write)(value); }};
}

template <auto Read, auto Write>
constexpr WaveformProperty Boolean(const char* name, bool defaultValue) {
  return {name, defaultValue ? -1 : 0, [](const uWaveform& control) { return (control.*Read)() ? -1 : 0; },
          [](uWaveform& control, std::int32_t value) { (control.*Write)(value != 0); }};
}

void WriteDrawType(uWaveform& control, std::int32_t value) {
  control.SetDrawType(value == dwtSingle ? dwtSingle : dwtNormal);
}

constexpr WaveformProperty kProperties[] = {
    Number<&uWaveform::BackColor, &uWaveform::SetBackColor>("BackColor", kButtonFaceColour),
    Number<&uWaveform::LineColour, &uWaveform::SetLineColour>("LineColour", kWaveLineColour),
    Number<&uWaveform::FillColour, &uWaveform::SetFillColour>("FillColour", kWaveFillColour),
    Number<&uWaveform::BorderStyle, &uWaveform::SetBorderStyle>("BorderStyle", 1),
    Boolean<&uWaveform::AutoScale, &uWaveform::SetAutoScale>("AutoScale", false),
    {"DrawType", dwtNormal, [](const uWaveform& control) { return std::int32_t{control.DrawType()}; },
     WriteDrawType},
    Boolean<&uWaveform::ShowPositionBar, &uWaveform::SetShowPositionBar>("ShowPositionBar", true),
};

}  // namespace

std::span<const WaveformProperty> PersistedWaveformProperties() {
  return kProperties;
}

}  // namespace qm
