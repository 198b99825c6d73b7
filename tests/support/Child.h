// Child.h - runs a piece of a test in a second process.
#ifndef TV_TEST_CHILD_H
#define TV_TEST_CHILD_H

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <exception>

#include <sys/wait.h>
#include <unistd.h>

/// A forked process that runs a function and gives back what it returns (0..99), as seen by
/// result(). 100 stands for an exception, 128 + n for signal n. It can wait at checkpoints.
///
///     Child other([&](Child::Gate& gate) {
///         TvFileStreamBuf* file = createFileStreamBuf(...);
///         gate.reached();                 // lets the parent go on, and waits for resume()
///         destoryFileIOStreamBuf(file);
///         return 0;
///     });
///     other.waitUntilReached();
///     ...
///     other.resume();
///     EXPECT_EQ(other.result(), 0);
class Child {
public:
    class Gate {
    public:
        void reached()
        {
            char byte = 'r';
            if (write(m_toParent, &byte, 1) != 1 || read(m_fromParent, &byte, 1) != 1)
                _exit(101);
        }

    private:
        friend class Child;
        int m_toParent = -1;
        int m_fromParent = -1;
    };

    template<class Body>
    explicit Child(Body body)
    {
        int up[2];
        int down[2];
        if (pipe(up) != 0 || pipe(down) != 0) {
            ADD_FAILURE() << "no pipe";
            return;
        }
        m_pid = fork();
        if (m_pid == 0) {
            ::close(up[0]);
            ::close(down[1]);
            Gate gate;
            gate.m_toParent = up[1];
            gate.m_fromParent = down[0];
            int result = 100;
            try {
                result = body(gate);
            } catch (...) {
            }
            _exit(result);
        }
        ::close(up[1]);
        ::close(down[0]);
        m_fromChild = up[0];
        m_toChild = down[1];
    }
    ~Child()
    {
        if (m_pid > 0 && !m_done)
            result();
        ::close(m_fromChild);
        ::close(m_toChild);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// False when the child ended before it reached its gate.
    bool waitUntilReached()
    {
        char byte = 0;
        return read(m_fromChild, &byte, 1) == 1;
    }

    void resume()
    {
        const char byte = 'g';
        if (write(m_toChild, &byte, 1) != 1)
            ADD_FAILURE() << "the other process is gone";
    }

    int result()
    {
        if (m_done)
            return m_result;
        ::close(m_toChild); // a child still at its gate gives up
        m_toChild = -1;
        int status = 0;
        waitpid(m_pid, &status, 0);
        m_done = true;
        m_result = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
        return m_result;
    }

private:
    pid_t m_pid = -1;
    int m_fromChild = -1;
    int m_toChild = -1;
    bool m_done = false;
    int m_result = -1;
};

/// Runs `body` in a process of its own; the process's result as Child::result().
template<class Body>
int inOtherProcess(Body body)
{
    Child child([&](Child::Gate&) { return body(); });
    return child.result();
}

#endif
