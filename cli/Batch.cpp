#include "cli/Batch.h"

#include "cli/Convert.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace svgtool {

namespace {

    // Files that several threads take one by one, and the results that one thread collects.
    class Pool
    {
    public:
        Pool(const std::vector<Job> &jobs, const Options &options, const StandardStreams &streams,
             std::vector<FileResult> &results)
            : m_jobs(jobs), m_options(options), m_streams(streams), m_results(results),
              m_isDone(jobs.size())
        {
        }

        // Converts files until there are none left.
        void work()
        {
            for (size_t i = m_next++; i < m_jobs.size(); i = m_next++) {
                FileResult result;
                result.input = shownInput(m_jobs[i].input);
                if (m_options.keepsDocuments)
                    awaitTurn(i);
                if (!m_isEnding)
                    result = convertFile(m_jobs[i], m_options, m_streams);
                if (m_options.failsFast && result.status == FileStatus::Failed)
                    m_isEnding = true;
                const std::lock_guard lock(m_mutex);
                m_results[i] = std::move(result);
                m_isDone[i] = true;
                ++m_doneCount;
                m_change.notify_one();
            }
        }

        // Lets the threads begin no more files.
        void end()
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
            m_room.notify_all();
        }

        // The result of a file is not needed any more.
        void forget(size_t index)
        {
            const std::lock_guard lock(m_mutex);
            m_forgotten = index + 1;
            m_room.notify_all();
        }

        // Waits for the result of a file, and calls tick while it waits.
        void await(size_t index, const std::function<void(size_t)> &tick)
        {
            constexpr std::chrono::milliseconds kTick(100);
            std::unique_lock lock(m_mutex);
            while (!m_isDone[index]) {
                m_change.wait_for(lock, kTick);
                const size_t done = m_doneCount;
                lock.unlock();
                tick(done);
                lock.lock();
            }
        }

    private:
        // Waits while too many documents are kept because an earlier file takes long.
        void awaitTurn(size_t index)
        {
            const size_t most = 4 * size_t(m_options.threads);
            std::unique_lock lock(m_mutex);
            m_room.wait(lock, [&] { return m_isEnding || index < m_forgotten + most; });
        }

        const std::vector<Job> &m_jobs;
        const Options &m_options;
        const StandardStreams &m_streams;
        std::vector<FileResult> &m_results;
        std::vector<bool> m_isDone;
        size_t m_doneCount = 0;
        size_t m_forgotten = 0;
        std::atomic<size_t> m_next{ 0 };
        std::atomic<bool> m_isEnding{ false };
        std::mutex m_mutex;
        std::condition_variable m_change;
        std::condition_variable m_room;
    };

} // namespace

std::vector<FileResult> convertAll(const std::vector<Job> &jobs, const Options &options,
                                   const StandardStreams &streams,
                                   const std::function<void(FileResult &)> &tell,
                                   const std::function<void(size_t)> &tick)
{
    std::vector<FileResult> results(jobs.size());
    const int threads = static_cast<int>(std::min(size_t(options.threads), jobs.size()));
    if (threads <= 1) {
        bool isEnding = false;
        for (size_t i = 0; i < jobs.size(); ++i) {
            results[i].input = shownInput(jobs[i].input);
            if (!isEnding)
                results[i] = convertFile(jobs[i], options, streams);
            isEnding = isEnding || (options.failsFast && results[i].status == FileStatus::Failed);
            tell(results[i]);
            tick(i + 1);
        }
        return results;
    }
    Pool pool(jobs, options, streams, results);
    std::vector<std::jthread> workers;
    try {
        for (int i = 0; i < threads; ++i)
            workers.emplace_back([&pool] { pool.work(); });
    } catch (const std::system_error &) {
        // As many as the system lets there be.
        if (workers.empty())
            throw Failure{ QStringLiteral("--jobs"), QStringLiteral("no thread can be started") };
    }
    try {
        for (size_t i = 0; i < jobs.size(); ++i) {
            pool.await(i, tick);
            tell(results[i]);
            pool.forget(i);
        }
    } catch (...) {
        // What is told has nowhere to go; the files that are begun are waited for.
        pool.end();
        throw;
    }
    return results;
}

} // namespace svgtool
