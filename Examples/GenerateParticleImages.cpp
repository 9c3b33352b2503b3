// SPDX-License-Identifier: Apache-2.0
/// \file
/// Makes raw camera bytes to try the library with: pairs of 12-bit particle images, packed as Mono12p.
///
///     GenerateParticleImages RAW [WORDS] [--size 1280x1024] [--pairs 1] [--seed 1]
///
/// Between the two pulses of a pair the particles move in a Lamb-Oseen vortex around the image's centre. RAW
/// takes the packed frames one after the other, WORDS the same pixels as little-endian 16-bit words.
///
/// The same seed gives the same bytes everywhere: only additions, multiplications, divisions and square roots
/// are used, which IEEE 754 defines exactly, and no function of the mathematics library.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{

struct Settings
{
    std::string rawFile;
    std::string wordsFile;
    unsigned int width = 1280;
    unsigned int height = 1024;
    unsigned int pairs = 1;
    unsigned int seed = 1;
};

/// One tracer in the light sheet; positions in pixels, z in half sheet thicknesses.
struct Particle
{
    double x;
    double y;
    double z;
    double diameter;
};

using Random = std::mt19937_64;
using Values = std::vector<double>;
using Words = std::vector<std::uint16_t>;

/// exp(-t) for t >= 0 as the limit (1 - t / 2^20)^(2^20); relative error below t^2 / 2^20.
double decay(double t)
{
    if (t > 40.0) {
        return 0.0;
    }
    double result = 1.0 - t / 1048576.0;
    for (int i = 0; i < 20; ++i) {
        result *= result;
    }
    return result;
}

/// Uniform in [0, 1).
double uniform(Random& random)
{
    return static_cast<double>(random() >> 11) / 9007199254740992.0;
}

/// Mean 0, deviation 1: the sum of twelve uniform numbers.
double normal(Random& random)
{
    double sum = -6.0;
    for (int i = 0; i < 12; ++i) {
        sum += uniform(random);
    }
    return sum;
}

/// Lamb-Oseen vortex: v(r) = G / (2 pi r) (1 - exp(-r^2 / rc^2)) along the circle, G the circulation times
/// the time between the pulses (P. G. Saffman, Vortex Dynamics, Cambridge University Press 1992,
/// section 13.3).
class Vortex
{
public:
    explicit Vortex(const Settings& settings)
        : m_centreX(0.5 * settings.width), m_centreY(0.5 * settings.height),
          m_core(0.12 * std::min(settings.width, settings.height))
    {
    }

    /// Moves a particle by `share` of its displacement between the pulses.
    void move(Particle& particle, double share) const
    {
        const double x = particle.x - m_centreX;
        const double y = particle.y - m_centreY;
        const double r2 = std::max(x * x + y * y, 1e-12);
        const double angle = share * strength() / r2 * (1.0 - decay(r2 / (m_core * m_core)));
        particle.x -= y * angle;
        particle.y += x * angle;
    }

private:
    /// G / (2 pi): 6 pixels of displacement at its maximum, which is 0.638 G / (2 pi rc).
    [[nodiscard]] double strength() const { return 6.0 / 0.638 * m_core; }

    double m_centreX;
    double m_centreY;
    double m_core;
};

/// 0.03 tracers per pixel, also beyond the border so that some can enter; the sheet's middle is z = 0.
std::vector<Particle> seedParticles(const Settings& settings, Random& random)
{
    const double margin = 16.0;
    const double width = settings.width + 2.0 * margin;
    const double height = settings.height + 2.0 * margin;
    std::vector<Particle> particles(static_cast<std::size_t>(0.03 * width * height));
    for (Particle& particle : particles) {
        particle.x = uniform(random) * width - margin;
        particle.y = uniform(random) * height - margin;
        particle.z = 2.0 * uniform(random) - 1.0;
        particle.diameter = std::max(1.6, 2.4 + 0.35 * normal(random));
    }
    return particles;
}

/// Adds a Gaussian spot I0 exp(-8 r^2 / d^2), I0 falling with the light sheet's own Gaussian profile
/// (M. Raffel and others, Particle Image Velocimetry, Springer 2018, section on synthetic images).
void drawParticle(const Settings& settings, const Particle& particle, Values& image)
{
    const double peak = 2600.0 * decay(2.0 * particle.z * particle.z);
    const double factor = 8.0 / (particle.diameter * particle.diameter);
    const int left = std::max(0, static_cast<int>(particle.x) - 5);
    const int right = std::min(static_cast<int>(settings.width), static_cast<int>(particle.x) + 7);
    const int top = std::max(0, static_cast<int>(particle.y) - 5);
    const int bottom = std::min(static_cast<int>(settings.height), static_cast<int>(particle.y) + 7);
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const double r2 = (x - particle.x) * (x - particle.x) + (y - particle.y) * (y - particle.y);
            image[static_cast<std::size_t>(y) * settings.width + static_cast<std::size_t>(x)] +=
                peak * decay(factor * r2);
        }
    }
}

/// Light sheet brighter in its middle, stray light, shot and read noise, and the camera's 12 bits.
Words expose(const Settings& settings, const Values& image, Random& random)
{
    Words words(image.size());
    for (std::size_t i = 0; i < image.size(); ++i) {
        const double y = (static_cast<double>(i / settings.width) / settings.height - 0.5) * 2.0;
        const double light = (image[i] + 90.0) * decay(0.45 * y * y);
        const double counts = 60.0 + light + normal(random) * std::sqrt(36.0 + 1.5 * light);
        words[i] = static_cast<std::uint16_t>(std::clamp(counts + 0.5, 0.0, 4095.0));
    }
    return words;
}

Words exposeAll(const Settings& settings, const std::vector<Particle>& particles, Random& random)
{
    Values image(static_cast<std::size_t>(settings.width) * settings.height, 0.0);
    for (const Particle& particle : particles) {
        drawParticle(settings, particle, image);
    }
    return expose(settings, image, random);
}

/// Mono12p: two pixels in three bytes, least significant bits first.
std::string pack(const Words& words)
{
    std::string bytes;
    bytes.reserve(words.size() / 2 * 3);
    for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
        bytes += static_cast<char>(words[i] & 255);
        bytes += static_cast<char>((words[i] >> 8) | ((words[i + 1] & 15) << 4));
        bytes += static_cast<char>(words[i + 1] >> 4);
    }
    return bytes;
}

std::string littleEndian(const Words& words)
{
    std::string bytes;
    bytes.reserve(words.size() * 2);
    for (const std::uint16_t word : words) {
        bytes += static_cast<char>(word & 255);
        bytes += static_cast<char>(word >> 8);
    }
    return bytes;
}

void writePair(const Settings& settings, Random& random, std::ofstream& raw, std::ofstream& words)
{
    std::vector<Particle> particles = seedParticles(settings, random);
    const Vortex vortex(settings);
    for (Particle& particle : particles) {
        vortex.move(particle, -0.5);
    }
    for (int pulse = 0; pulse < 2; ++pulse) {
        const Words frame = exposeAll(settings, particles, random);
        raw << pack(frame);
        if (words.is_open()) {
            words << littleEndian(frame);
        }
        for (Particle& particle : particles) {
            vortex.move(particle, 1.0);
        }
    }
}

/// False unless the whole text is a number from 1 to 65535.
bool readNumber(std::string_view text, unsigned int& number)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && number > 0 && number <= 65535;
}

bool readSize(std::string_view text, Settings& settings)
{
    const std::size_t cross = text.find('x');
    return cross != std::string_view::npos && readNumber(text.substr(0, cross), settings.width) &&
           readNumber(text.substr(cross + 1), settings.height) && settings.width * settings.height % 2 == 0;
}

bool readArguments(const std::vector<std::string>& arguments, Settings& settings)
{
    std::vector<std::string> files;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!argument.starts_with("--")) {
            files.push_back(argument);
            continue;
        }
        if (++i == arguments.size()) {
            return false;
        }
        const bool read = argument == "--size" ? readSize(arguments[i], settings)
                          : argument == "--pairs"
                              ? readNumber(arguments[i], settings.pairs)
                              : argument == "--seed" && readNumber(arguments[i], settings.seed);
        if (!read) {
            return false;
        }
    }
    if (files.empty() || files.size() > 2) {
        return false;
    }
    settings.rawFile = files.front();
    settings.wordsFile = files.size() == 2 ? files.back() : std::string();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    Settings settings;
    if (!readArguments({argv + 1, argv + argc}, settings)) {
        std::fputs("usage: GenerateParticleImages RAW [WORDS] [--size WIDTHxHEIGHT] [--pairs N] [--seed N]\n"
                   "the number of pixels must be even\n",
                   stderr);
        return 2;
    }
    std::ofstream raw(settings.rawFile, std::ios::binary);
    std::ofstream words;
    if (!settings.wordsFile.empty()) {
        words.open(settings.wordsFile, std::ios::binary);
    }
    Random random(settings.seed);
    for (unsigned int pair = 0; pair < settings.pairs; ++pair) {
        writePair(settings, random, raw, words);
    }
    raw.flush();
    words.flush();
    if (!raw || (!settings.wordsFile.empty() && !words)) {
        std::fprintf(stderr, "cannot write %s or %s\n", settings.rawFile.c_str(), settings.wordsFile.c_str());
        return 1;
    }
    return EXIT_SUCCESS;
}
