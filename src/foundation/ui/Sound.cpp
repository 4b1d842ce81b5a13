#include <session/Globals.h>
#include <ui/Sound.h>

#include <QApplication>
#include <QAudioDevice>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

std::function<void()>& hook() {
    static std::function<void()> current;
    return current;
}

/// False when there is nothing to play on.
bool play(const QByteArray& samples) {
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    QAudioFormat format;
    format.setSampleRate(toneSampleRate);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    if (device.isNull() || !device.isFormatSupported(format)) return false;

    static QPointer<QAudioSink> last;
    delete last.data();
    auto* sink = new QAudioSink(device, format, qApp);
    last = sink;
    auto* source = new QBuffer(sink);
    source->setData(samples);
    source->open(QIODevice::ReadOnly);
    QObject::connect(sink, &QAudioSink::stateChanged, sink, [sink](QAudio::State state) {
        if (state == QAudio::IdleState || state == QAudio::StoppedState) sink->deleteLater();
    });
    sink->start(source);
    return sink->error() == QAudio::NoError;
}

} // namespace

void SetSoundHook(std::function<void()> next) { hook() = std::move(next); }

QByteArray ToneSamples(const std::vector<Tone>& tones) {
    QByteArray samples;
    for (const Tone& tone : tones) {
        const int count = toneSampleRate * std::max(0, tone.milliseconds) / 1000;
        const int fade = std::min(count / 2, toneSampleRate / 200);
        const double step = 2 * std::numbers::pi * tone.hertz / toneSampleRate;
        for (int i = 0; i < count; ++i) {
            const int edge = std::min(i, count - 1 - i);
            const double level = edge < fade ? static_cast<double>(edge) / fade : 1.0;
            const auto value = static_cast<qint16>(std::lround(14000 * level * std::sin(step * i)));
            samples.append(static_cast<char>(value & 0xFF));
            samples.append(static_cast<char>((value >> 8) & 0xFF));
        }
    }
    return samples;
}

std::vector<Tone> TonesOf(Signal signal) {
    if (signal == Signal::ScanRefused) return {{160, 180}};
    if (!gIsSoundCardAktiv) return {{200, 300}, {500, 500}, {200, 300}};
    std::vector<Tone> tones;
    for (int i = 0; i < 7; ++i)
        tones.insert(tones.end(), {{880, 90}, {0, 60}});
    return tones;
}

void Sound(Signal signal) {
    if (hook())
        hook()();
    else if (!play(ToneSamples(TonesOf(signal))))
        QApplication::beep();
}
