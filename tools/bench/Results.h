#pragma once

#include <map>
#include <string>
#include <vector>

namespace bench {

double median(std::vector<double> values);

/// The figures of one measurement, of which it prints the medians and what is aimed at.
class Results
{
public:
    explicit Results(const char *measurement);

    void add(const std::string &program, const std::string &quantity, double value);

    /// One line: the median of a program's figures, with the smallest and the largest.
    void print(const std::string &program, const std::string &quantity) const;
    /// Prints how often the second program's median goes into the first's, beside the
    /// most that is aimed at.
    void judgeRatio(const std::string &quantity, const std::string &program,
                    const std::string &floor, double aim);
    /// Prints the largest figure, beside the most that is aimed at.
    void judgeLargest(const std::string &program, const std::string &quantity, double aim);

private:
    using Key = std::pair<std::string, std::string>;

    static void judge(const Key &key, const std::string &what, double figure, double aim);

    std::map<Key, std::vector<double>> figures;
};

} // namespace bench
