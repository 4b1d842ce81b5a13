#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

/// What the till tells by ear.
enum class Signal {
    UnknownArticle, ///< without a sound card (gIsSoundCardAktiv False) the tones that a PC speaker would
                    ///< give, 200 Hz for 300 ms, 500 Hz for 500 ms, 200 Hz for 300 ms; with one a warning
                    ///< sound seven times, 150 ms apart
    ScanRefused     ///< short and low: a scan that nobody could take
};
/// Sounds a signal and returns at once. It comes from the machine's device for sound wherever there is one,
/// else the desktop beeps. One signal at a time: the next takes the place of one that still sounds.
void Sound(Signal signal);
inline void SoundUnknownArticle() { Sound(Signal::UnknownArticle); }

/// Replaces what is heard, e.g. to count signals; an empty function brings the sound back.
void SetSoundHook(std::function<void()> hook);

/// 0 hertz is a pause.
struct Tone {
    int hertz = 0, milliseconds = 0;
};
[[nodiscard]] std::vector<Tone> TonesOf(Signal signal);
inline constexpr int toneSampleRate = 44100;
/// The tones as 16-bit mono samples, faded at their ends so that they don't crack.
[[nodiscard]] QByteArray ToneSamples(const std::vector<Tone>& tones);
