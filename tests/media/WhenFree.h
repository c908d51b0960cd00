#pragma once

#include <QSemaphore>

#include <future>
#include <utility>

/// Does the job on a thread of its own as soon as one of the places is free, which must outlive it.
/// What it gives comes by the future. Unlike the toolkit's pool of threads, its locks are seen by
/// the thread sanitizer.
template <class Job>
auto whenFree(QSemaphore &places, Job job)
{
    return std::async(std::launch::async, [&places, job = std::move(job)] {
        places.acquire();
        const QSemaphoreReleaser place(places);
        return job();
    });
}
