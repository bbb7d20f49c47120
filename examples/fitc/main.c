/* Fits a decay on a constant background to measured counts, in plain C.
 *
 * usage: fitc < FILE        FILE holds a time and a count in each line */
#include <tarnis/peak/mpfit.h>

#include <math.h>
#include <stdio.h>

enum { AMPLITUDE, LIFETIME, BACKGROUND, PARAMETERS };
enum { MAX_POINTS = 1000 };

struct points {
    double time[MAX_POINTS];
    double count[MAX_POINTS];
};

static double model(const double* p, double time)
{
    return p[AMPLITUDE] * exp(-time / p[LIFETIME]) + p[BACKGROUND];
}

/* Residuals in units of their standard deviation, so that the errors of the parameters have the parameters' units. */
static int residuals(int m, int npar, double* p, double* fvec, double** dvec, void* private_data)
{
    const struct points* points = private_data;
    int i;
    (void)npar;
    (void)dvec;
    for (i = 0; i < m; ++i) {
        const double variance = points->count[i] > 1.0 ? points->count[i] : 1.0;
        fvec[i] = (points->count[i] - model(p, points->time[i])) / sqrt(variance);
    }
    return 0;
}

static int read_points(struct points* points)
{
    int n = 0;
    while (n < MAX_POINTS && scanf("%lf %lf", &points->time[n], &points->count[n]) == 2)
        ++n;
    return n;
}

int main(void)
{
    static const char* const names[PARAMETERS] = { "amplitude", "lifetime", "background" };
    static struct points points;
    const int n = read_points(&points);
    double p[PARAMETERS] = { 100.0, 1.0, 0.0 };
    double error[PARAMETERS];
    mp_par pars[PARAMETERS] = { { 0 } };
    mp_result result = { 0 };
    int status;
    int i;

    if (!feof(stdin)) {
        fprintf(
            stderr, "fitc: line %d is not a time and a count, or there are more than %d lines\n", n + 1, MAX_POINTS);
        return 2;
    }
    pars[LIFETIME].limited[0] = 1; /* a lifetime is positive */
    pars[LIFETIME].limits[0] = 1e-6;
    pars[BACKGROUND].limited[0] = 1; /* limits[0] is 0 */
    result.xerror = error;
    status = mpfit(residuals, n, PARAMETERS, p, pars, NULL, &points, &result);
    if (status < MP_CONVERGED_FTOL) {
        fprintf(stderr, "fitc: no fit of %d points, status %d\n", n, status);
        return 1;
    }
    printf("%d points, chi-square %.2f, %d iterations\n", n, result.bestnorm, result.niter);
    for (i = 0; i < PARAMETERS; ++i)
        printf("%-10s %8.3f +- %.3f\n", names[i], p[i], error[i]);
    return 0;
}
