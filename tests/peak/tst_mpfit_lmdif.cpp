// Unbounded fits do what lmdif does, call by call, and reach the published minima.
#include "mghproblems.h"
#include <QTest>
#include <cmath>
using namespace tarnis::testing;
class TestMpfitLmdif : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void a();
};
void TestMpfitLmdif::a() {
  for (auto& p : mghProblems()) for (double f : {1.,10.,100.}) {
     auto q = p.fit; for (auto& v : q.start) v *= f;
     FitSettings s; s.epsfcn=2.220446049250313e-16; s.maxiter=3000;
     auto o = runMpfit(q,s); auto l = runLmdif(q,s);
     size_t k=0; for(;k<std::min(o.calls.size(),l.calls.size());++k) if(o.calls[k]!=l.calls[k]) break;
     printf("%-50s %3g %zu/%zu/%zu status %d %d sum %g %g min %g\n", q.name.c_str(), f, k,o.calls.size(),l.calls.size(), o.status,l.status,o.sumOfSquares,l.sumOfSquares, p.minima[0]);
  }
}
QTEST_GUILESS_MAIN(TestMpfitLmdif)
#include "tst_mpfit_lmdif.moc"
