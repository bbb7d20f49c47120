/* A C program on the fitter: fits a Gaussian peak with bounds and fails by its exit code. */
#include <tarnis/peak/mpfit.h>

#include <math.h>
#include <stdio.h>
#include <string.h>

struct series {
    const double* y;
    int calls;
};

static int residuals(int m, int npar, double* p, double* fvec, double** dvec, void* private_data)
{
    struct series* data = private_data;
    int i;
    (void)npar;
    (void)dvec;
    ++data->calls;
    for (i = 0; i < m; ++i) {
        const double distance = i - p[1];
        fvec[i] = data->y[i] - p[0] * exp(-0.5 * distance * distance / (p[2] * p[2])) - p[3];
    }
    return 0;
}

static int differs(const char* what, double value, double expected, double tolerance)
{
    if (fabs(value - expected) <= tolerance)
        return 0;
    fprintf(stderr, "%s is %.12g, expected %.12g\n", what, value, expected);
    return 1;
}

int main(void)
{
    static const double truth[4] = { 120.0, 14.3, 2.5, 8.0 };
    double y[30];
    double p[4] = { 100.0, 15.0, 3.0, 0.0 };
    double xerror[4];
    double covar[16];
    double resid[30];
    mp_par pars[4] = { { 0 } };
    mp_config config = { 0 };
    mp_result result = { 0 };
    struct series data = { 0 };
    int i;
    int failures = 0;

    data.y = y;
    for (i = 0; i < 30; ++i)
        y[i] = truth[0] * exp(-0.5 * pow((i - truth[1]) / truth[2], 2)) + truth[3];
    pars[2].limited[0] = 1;
    pars[2].limits[0] = 0.5;
    pars[3].limited[0] = pars[3].limited[1] = 1;
    pars[3].limits[1] = 20.0;
    config.nprint = 1;
    result.xerror = xerror;
    result.covar = covar;
    result.resid = resid;

    if (mpfit(residuals, 30, 4, p, pars, &config, &data, &result) < MP_CONVERGED_FTOL) {
        fprintf(stderr, "status %d\n", result.status);
        return 1;
    }
    for (i = 0; i < 4; ++i)
        failures += differs("a parameter", p[i], truth[i], 1e-6);
    failures += differs("the number of calls", result.nfev, data.calls, 0.0);
    failures += differs("an error", xerror[2], sqrt(covar[10]), 0.0);
    failures += strcmp(result.version, "1.1") != 0;
    failures += mpfit(NULL, 30, 4, p, NULL, NULL, NULL, NULL) != MP_NO_FUNCTION;
    printf("status %d after %d iterations and %d calls: N %.6f, center %.6f, sigma %.6f, offset %.6f\n", result.status,
        result.niter, result.nfev, p[0], p[1], p[2], p[3]);
    return failures;
}
