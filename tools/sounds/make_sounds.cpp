// make_sounds FOLDER: writes the alert sounds into FOLDER as WAV files (44.1 kHz, 16 bit, mono).
// Every sound is computed, so the same source always gives the same bytes.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int kRate = 44100;
constexpr double kPeak = 0.7079; // -3 dBFS

using Samples = std::vector<double>;

Samples silence(double seconds) {
  return Samples(size_t(seconds * kRate), 0.0);
}

struct Partial {
  double ratio; // of the tone's frequency
  double level; // relative loudness
  double decay; // seconds until it has fallen to 1/e
};

/// Adds a struck tone: partials that die away after a soft attack.
void strike(Samples& samples, double start, double frequency, double level,
            const std::vector<Partial>& partials, double attack = 0.004) {
  for (const Partial& partial : partials) {
    const double omega = 2 * std::numbers::pi * frequency * partial.ratio / kRate;
    for (size_t i = size_t(start * kRate), n = 0; i < samples.size(); ++i, ++n) {
      const double t = double(n) / kRate;
      const double rise = t < attack ? 0.5 - 0.5 * std::cos(std::numbers::pi * t / attack) : 1.0;
      samples[i] +=
          level * partial.level * rise * std::exp(-t / partial.decay) * std::sin(omega * double(n));
    }
  }
}

/// Adds a tone whose pitch glides from one frequency to another.
void glide(Samples& samples, double start, double duration, double from, double to, double level) {
  double phase = 0;
  const size_t count = size_t(duration * kRate);
  const size_t first = size_t(start * kRate);
  for (size_t n = 0; n < count && first + n < samples.size(); ++n) {
    const double part = double(n) / double(count);
    phase += 2 * std::numbers::pi * from * std::pow(to / from, part) / kRate;
    const double envelope = std::sin(std::numbers::pi * part);
    samples[first + n] += level * envelope * envelope * std::sin(phase);
  }
}

const std::vector<Partial> kBell{{1, 1, .45}, {2.0, .5, .3}, {2.76, .35, .2}, {5.4, .15, .1}};
const std::vector<Partial> kMarimba{{1, 1, .22}, {3.93, .25, .06}, {9.2, .08, .02}};
const std::vector<Partial> kKalimba{{1, 1, .35}, {2.0, .18, .2}, {5.95, .12, .05}};
const std::vector<Partial> kGlass{{1, 1, .3}, {2.32, .4, .22}, {4.25, .2, .12}, {6.63, .1, .07}};
const std::vector<Partial> kBowl{{1, 1, .6}, {1.004, .8, .6}, {2.71, .4, .4}, {5.15, .15, .2}};
const std::vector<Partial> kHarp{{1, 1, .4}, {2, .45, .25}, {3, .2, .15}, {4, .1, .1}};
const std::vector<Partial> kWood{{1, 1, .05}, {2.57, .5, .03}, {4.3, .2, .015}};

Samples bambooKnock() {
  Samples s = silence(0.55);
  strike(s, 0.00, 660, 0.9, kWood, 0.001);
  strike(s, 0.13, 660, 0.7, kWood, 0.001);
  strike(s, 0.26, 880, 1.0, kWood, 0.001);
  return s;
}

Samples crystalBell() {
  Samples s = silence(1.4);
  strike(s, 0, 1318.51, 1, kBell);
  strike(s, 0.16, 1760.0, 0.7, kBell);
  return s;
}

Samples doorChime() {
  Samples s = silence(1.5);
  strike(s, 0, 659.26, 1, kBell, 0.006);
  strike(s, 0.42, 523.25, 1, kBell, 0.006);
  return s;
}

Samples glassDrops() {
  Samples s = silence(1.1);
  strike(s, 0.00, 2093.0, 0.8, kGlass);
  strike(s, 0.12, 1567.98, 0.9, kGlass);
  strike(s, 0.27, 2637.02, 0.6, kGlass);
  return s;
}

Samples harpRise() {
  Samples s = silence(1.3);
  const std::array notes{392.0, 493.88, 587.33, 783.99};
  for (size_t i = 0; i < notes.size(); ++i)
    strike(s, 0.09 * double(i), notes[i], 0.8, kHarp);
  return s;
}

Samples kalimbaSmile() {
  Samples s = silence(1.2);
  strike(s, 0.00, 523.25, 0.8, kKalimba);
  strike(s, 0.15, 783.99, 0.8, kKalimba);
  strike(s, 0.30, 659.26, 0.9, kKalimba);
  return s;
}

Samples marimbaSteps() {
  Samples s = silence(0.9);
  strike(s, 0.00, 440.0, 0.9, kMarimba, 0.002);
  strike(s, 0.14, 554.37, 0.9, kMarimba, 0.002);
  strike(s, 0.28, 659.26, 1.0, kMarimba, 0.002);
  return s;
}

Samples morningBird() {
  Samples s = silence(0.8);
  glide(s, 0.00, 0.14, 2400, 3300, 0.8);
  glide(s, 0.20, 0.10, 3100, 2500, 0.7);
  glide(s, 0.36, 0.22, 2500, 3500, 0.9);
  return s;
}

Samples roundPopClick() {
  Samples s = silence(0.22);
  glide(s, 0, 0.07, 320, 950, 1);
  strike(s, 0.045, 1250, 0.35, kWood, 0.001);
  return s;
}

Samples singingBowl() {
  Samples s = silence(1.5);
  strike(s, 0, 349.23, 1, kBowl, 0.02);
  return s;
}

struct Sound {
  const char* name;
  Samples (*make)();
};

/// In the order of their file names.
constexpr Sound kSounds[] = {
    {"bamboo_knock.wav", bambooKnock},
    {"crystal_bell.wav", crystalBell},
    {"door_chime.wav", doorChime},
    {"glass_drops.wav", glassDrops},
    {"harp_rise.wav", harpRise},
    {"kalimba_smile.wav", kalimbaSmile},
    {"marimba_steps.wav", marimbaSteps},
    {"morning_bird.wav", morningBird},
    {"round_pop_click.wav", roundPopClick},
    {"singing_bowl.wav", singingBowl},
};

/// Brings the peak to -3 dBFS and lets the end fade out, so that neither end clicks.
void finish(Samples& samples) {
  const size_t fade = std::min(samples.size() / 3, size_t(0.25 * kRate));
  for (size_t i = 0; i < fade; ++i) {
    const double part = double(i) / double(fade);
    samples[samples.size() - 1 - i] *= 0.5 - 0.5 * std::cos(std::numbers::pi * part);
  }
  double loudest = 0;
  for (double sample : samples)
    loudest = std::max(loudest, std::fabs(sample));
  for (double& sample : samples)
    sample *= kPeak / loudest;
}

void put(std::string& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i)
    out += char((value >> (8 * i)) & 0xff);
}

std::string wav(const Samples& samples) {
  const auto dataSize = uint32_t(samples.size() * 2);
  std::string out = "RIFF";
  put(out, 36 + dataSize, 4);
  out += "WAVEfmt ";
  put(out, 16, 4); // size of the format
  put(out, 1, 2);  // PCM
  put(out, 1, 2);  // channels
  put(out, kRate, 4);
  put(out, kRate * 2, 4); // bytes a second
  put(out, 2, 2);         // bytes a frame
  put(out, 16, 2);        // bits a sample
  out += "data";
  put(out, dataSize, 4);
  for (double sample : samples)
    put(out, uint32_t(uint16_t(int16_t(std::lround(sample * 32767)))), 2);
  return out;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_sounds FOLDER\n", stderr);
    return 2;
  }
  const std::filesystem::path folder(argv[1]);
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  for (const Sound& sound : kSounds) {
    Samples samples = sound.make();
    finish(samples);
    const std::string bytes = wav(samples);
    std::ofstream file(folder / sound.name, std::ios::binary);
    file.write(bytes.data(), std::streamsize(bytes.size()));
    file.close();
    if (!file) {
      std::fprintf(stderr, "make_sounds: %s can't be written\n", (folder / sound.name).c_str());
      return 1;
    }
  }
  return 0;
}
