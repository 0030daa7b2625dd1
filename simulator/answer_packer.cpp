#include "simulator/answer_packer.h"

std::vector<QByteArray> AnswerPacker::add(const QByteArray &bytes, qsizetype limit)
{
    collected_ += bytes;
    std::vector<QByteArray> full;
    qsizetype at = 0;
    for (; collected_.size() - at >= limit; at += limit)
        full.push_back(collected_.mid(at, limit));
    collected_.remove(0, at);
    return full;
}

std::vector<QByteArray> AnswerPacker::flush(qsizetype limit)
{
    std::vector<QByteArray> datagrams = add({}, limit);
    if (!collected_.isEmpty())
        datagrams.push_back(collected_);
    collected_.clear();
    return datagrams;
}
