/* The entry points of libvornwout, one per command: all that the library exports.
 *
 * Each reads its command from the current token stream of the platform library, asks the registered
 * host, and reports through the output sinks. Call them on one thread, one command at a time. What
 * a host throws from a host call passes through, save where the command reports it.
 */
#ifndef VORNWOUT_ENTRY_POINTS_H
#define VORNWOUT_ENTRY_POINTS_H

#ifdef __cplusplus
extern "C" {
#endif

void outnew_(void);    /* OUTPUT NEW */
void outname_(void);   /* OUTPUT NAME */
void outactiv8_(void); /* OUTPUT ACTIVATE */
void outclose_(void);  /* OUTPUT CLOSE */
void outopen_(void);   /* OUTPUT OPEN */
void outsave_(void);   /* OUTPUT SAVE */
void outdisp_(void);   /* OUTPUT DISPLAY */
void outcomnt_(void);  /* OUTPUT COMMENT */
void outmodify_(void); /* OUTPUT MODIFY */
void outexport_(void); /* OUTPUT EXPORT */
void stbprint_(void);  /* STB PRINT */

#ifdef __cplusplus
}
#endif

#endif
